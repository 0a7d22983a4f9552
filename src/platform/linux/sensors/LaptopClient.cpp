#include "platform/linux/sensors/LaptopClient.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <string>

#include "laptop/transport.h"
#include "sockets/input.h"
#include "sockets/user_socket.h"

namespace quiverly {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::nanoseconds retryPause = std::chrono::milliseconds(1); // after a call that failed

// The laptop that was silent last. Main thread.
struct {
    LaptopClient::SocketIdentity socket;
    Clock::time_point forgotten; // when it is asked again
} silentLaptop;

// Nothing when there is no socket.
std::optional<LaptopClient::SocketIdentity> identityOf(const std::filesystem::path& socket) {
    struct stat status = {};
    if (::lstat(socket.c_str(), &status) != 0 || !S_ISSOCK(status.st_mode)) return std::nullopt;
    return LaptopClient::SocketIdentity(status.st_dev, status.st_ino, status.st_ctim.tv_sec, status.st_ctim.tv_nsec);
}

FileDescriptor connectedSocket(const std::filesystem::path& file) {
    FileDescriptor socket = packetSocket();
    const auto address = SocketAddress::ofFile(file);
    if (!socket || ::connect(socket.get(), address.get(), address.length()) != 0) return {};
    if (!peerIs(socket.get(), ::geteuid())) return {};
    return socket;
}

auto gone() {
    return tl::unexpected(std::make_error_code(std::errc::no_such_device));
}

} // namespace

std::shared_ptr<LaptopClient> LaptopClient::connect(const laptop::SocketPlace& place) {
    if (place.isFallback && !isPrivate(place.folder)) return nullptr;
    const auto identity = identityOf(place.socket());
    if (!identity || (identity == silentLaptop.socket && Clock::now() < silentLaptop.forgotten)) return nullptr;
    FileDescriptor socket = connectedSocket(place.socket());
    return socket ? over(std::move(socket), *identity) : nullptr;
}

std::shared_ptr<LaptopClient> LaptopClient::over(FileDescriptor socket, const SocketIdentity& identity) {
    std::shared_ptr<LaptopClient> client(new LaptopClient(std::move(socket), identity));
    return client->receiveHellos() ? client : nullptr;
}

// Whether the laptop has named its services by the rules.
bool LaptopClient::receiveHellos() {
    while (auto message = await()) {
        if (std::holds_alternative<laptop::EndOfServices>(*message)) return true;
        auto* hello = std::get_if<laptop::ServiceHello>(&*message);
        if (hello == nullptr || hellos.size() == laptop::maximumServices) return false;
        hellos.push_back(std::move(*hello));
    }
    return false;
}

void LaptopClient::writeProperty(std::uint8_t service, std::string_view key, std::int32_t value) {
    ask<laptop::PropertyAnswer>(laptop::PropertyWrite{.service = service, .key = std::string(key), .value = value});
}

tl::expected<FileDescriptor, std::error_code> LaptopClient::open(std::uint8_t service) {
    if (isOpen) return tl::unexpected(std::make_error_code(std::errc::device_or_resource_busy));
    const auto opened = ask<laptop::OpenAnswer>(laptop::OpenRequest{service});
    if (!opened) return tl::unexpected(opened.error());
    FileDescriptor reports(::fcntl(socket.get(), F_DUPFD_CLOEXEC, 0));
    if (!reports) return tl::unexpected(std::error_code(errno, std::generic_category()));
    isOpen = true;
    return reports;
}

template<class Answer>
tl::expected<void, std::error_code> LaptopClient::ask(const laptop::Message& question) {
    if (!socket || !send(question)) return gone();
    const auto message = await();
    const auto* answer = message ? std::get_if<Answer>(&*message) : nullptr;
    if (answer == nullptr) {
        if (!isOpen) socket.reset();
        return gone();
    }
    if (answer->error != 0) return tl::unexpected(std::error_code(answer->error, std::generic_category()));
    return {};
}

// False when it cannot be sent.
bool LaptopClient::send(const laptop::Message& question) {
    for (;;) {
        const auto sent = laptop::send(socket.get(), question);
        if (sent) return true;
        if (laptop::endsConnection(sent.error()) || patience == patience.zero()) return false;
        waitForInput({}, retryPause);
        patience -= std::min(patience, retryPause);
    }
}

// The next message. Any error is the end of the connection, or of the patience.
tl::expected<laptop::Message, std::error_code> LaptopClient::await() {
    const auto begin = Clock::now();
    auto message = awaitUntil(begin + patience);
    patience -= std::min<std::chrono::nanoseconds>(patience, Clock::now() - begin);
    return message;
}

tl::expected<laptop::Message, std::error_code> LaptopClient::awaitUntil(Clock::time_point end) {
    for (;;) {
        auto message = laptop::receive(socket.get());
        const bool ignored = message && *message && isOpen && std::holds_alternative<laptop::Report>(**message);
        if (message && *message && !ignored) return std::move(**message);
        if (!message && laptop::endsConnection(message.error())) return tl::unexpected(message.error());
        const auto now = Clock::now();
        if (now >= end) {
            silentLaptop = {.socket = identity, .forgotten = now + std::chrono::seconds(1)};
            return gone();
        }
        pollfd input = inputOf(socket.get());
        message ? waitForInput({&input, 1}, end - now) : waitForInput({}, retryPause);
    }
}

} // namespace quiverly
