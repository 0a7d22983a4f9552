#include "platform/linux/sensors/LaptopConnection.h"

#include <sys/socket.h>
#include <sys/uio.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "sockets/input.h"
#include "sockets/user_socket.h"

namespace quiverly {

namespace {

using Clock = std::chrono::steady_clock;

// The laptop that was silent last. Main thread.
struct {
    laptop::SocketIdentity socket;
    Clock::time_point forgotten; // when it is asked again
} silentLaptop;

FileDescriptor connectedSocket(const laptop::SocketPlace& place) {
    FileDescriptor socket = packetSocket();
    const auto address = SocketAddress::ofFile(place.socket());
    if (!socket || ::connect(socket.get(), address.get(), address.length()) != 0) return {};
    if (!peerIs(socket.get(), ::geteuid())) return {};
    return socket;
}

} // namespace

std::shared_ptr<LaptopConnection> LaptopConnection::connect(const laptop::SocketPlace& place) {
    if (place.isFallback && !isPrivate(place.folder)) return nullptr;
    const auto identity = laptop::identityOf(place.socket());
    if (!identity || (identity == silentLaptop.socket && Clock::now() < silentLaptop.forgotten)) return nullptr;
    FileDescriptor socket = connectedSocket(place);
    if (!socket) return nullptr;
    std::shared_ptr<LaptopConnection> connection(new LaptopConnection(std::move(socket), *identity));
    return connection->receiveHellos() ? connection : nullptr;
}

bool LaptopConnection::receiveHellos() {
    while (auto message = await()) {
        if (std::holds_alternative<laptop::EndOfServices>(*message)) return true;
        auto* hello = std::get_if<laptop::ServiceHello>(&*message);
        if (hello == nullptr || hellos.size() == laptop::maximumServices) return false;
        hellos.push_back(std::move(*hello));
    }
    return false;
}

int LaptopConnection::writeProperty(std::uint8_t service, std::string_view key, std::int32_t value) {
    return ask<laptop::PropertyAnswer>(
        laptop::PropertyWrite{.service = service, .key = std::string(key), .value = value});
}

int LaptopConnection::open(std::uint8_t service) {
    return ask<laptop::OpenAnswer>(laptop::OpenRequest{service});
}

template<class Answer>
int LaptopConnection::ask(const laptop::Message& question) {
    if (ended || !laptop::send(socket.get(), question)) return ENODEV;
    const auto message = await();
    const auto* answer = message ? std::get_if<Answer>(&*message) : nullptr;
    if (answer != nullptr) return answer->error;
    end();
    return ENODEV;
}

std::optional<laptop::Message> LaptopConnection::await() {
    while (!ended) {
        laptop::Incoming incoming = laptop::receive(socket.get());
        if (incoming.message) return std::move(incoming.message);
        if (incoming.ended || !waitForInput()) return end();
    }
    return std::nullopt;
}

bool LaptopConnection::waitForInput() {
    const auto begin = Clock::now();
    pollfd input = inputOf(socket.get());
    const bool ready = quiverly::waitForInput({&input, 1}, patience);
    const auto now = Clock::now();
    patience -= std::min(patience, now - begin);
    if (!ready) silentLaptop = {.socket = identity, .forgotten = now + std::chrono::seconds(1)};
    return ready;
}

std::nullopt_t LaptopConnection::end() {
    ended = true;
    return std::nullopt;
}

sensors::Reading LaptopConnection::readReport(std::span<std::uint8_t> buffer) const {
    using Kind = sensors::Reading::Kind;
    std::uint8_t mark = 0;
    std::array<iovec, 2> parts{
        {{.iov_base = &mark, .iov_len = 1}, {.iov_base = buffer.data(), .iov_len = buffer.size()}}};
    msghdr packet = {};
    packet.msg_iov = parts.data();
    packet.msg_iovlen = parts.size();
    const ssize_t length = ::recvmsg(socket.get(), &packet, MSG_DONTWAIT);
    if (length > 0) {
        if (mark != laptop::reportMark) return {};
        return {.kind = Kind::report, .length = static_cast<std::size_t>(length - 1)};
    }
    const bool later = length < 0 && (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR);
    return {.kind = later ? Kind::nothing : Kind::ended};
}

} // namespace quiverly
