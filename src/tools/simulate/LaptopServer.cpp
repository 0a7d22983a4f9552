#include "tools/simulate/LaptopServer.h"

#include <fcntl.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "sockets/input.h"
#include "sockets/user_socket.h"
#include "tools/simulate/registry.h"

namespace quiverly {

namespace {

bool sendHellos(int socket) {
    const auto entries = registry();
    return std::ranges::all_of(entries, [&](const auto& entry) { return laptop::send(socket, entry.hello); }) &&
           laptop::send(socket, laptop::EndOfServices{});
}

} // namespace

std::optional<std::string> LaptopServer::appear() {
    return listener.show();
}

void LaptopServer::vanish() {
    listener.hide();
    for (Client& client : clients) client.gone = true;
    forgetGone();
}

void LaptopServer::addInputs(std::vector<pollfd>& inputs) const {
    inputs.push_back(inputOf(listener.descriptor()));
    for (const Client& client : clients) inputs.push_back(inputOf(client.socket.get()));
}

void LaptopServer::handleInputs(std::span<const pollfd> inputs) {
    for (std::size_t index = 1; index < inputs.size(); ++index) {
        if (inputs[index].revents != 0) handle(clients[index - 1]);
    }
    forgetGone();
    if (inputs[0].revents != 0) accept();
}

void LaptopServer::accept() {
    FileDescriptor socket(::accept4(listener.descriptor(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (!socket) return turnAway();
    if (!peerIs(socket.get(), ::geteuid())) return say("another user's program was turned away");
    if (!sendHellos(socket.get())) return;
    clients.push_back({.socket = std::move(socket), .number = ++clientsSoFar});
    say("client " + std::to_string(clientsSoFar) + " came");
}

FileDescriptor LaptopServer::openSpare() {
    return FileDescriptor(::open("/dev/null", O_RDONLY | O_CLOEXEC));
}

// A client that nobody takes in would keep the laptop awake for ever.
void LaptopServer::turnAway() {
    if (errno != EMFILE && errno != ENFILE) return;
    spare.reset();
    FileDescriptor(::accept4(listener.descriptor(), nullptr, nullptr, SOCK_CLOEXEC)).reset();
    spare = openSpare();
    say("too many open files: a client was turned away");
}

void LaptopServer::handle(Client& client) {
    const laptop::Incoming incoming = laptop::receive(client.socket.get());
    bool kept = !incoming.ended;
    if (incoming.message) kept = answer(client, *incoming.message);
    client.gone = !kept;
}

// Whether the client kept the rules.
bool LaptopServer::answer(Client& client, const laptop::Message& message) {
    if (const auto* write = std::get_if<laptop::PropertyWrite>(&message)) {
        return laptop::send(client.socket.get(), laptop::PropertyAnswer{writeProperty(*write)});
    }
    if (const auto* request = std::get_if<laptop::OpenRequest>(&message)) {
        return laptop::send(client.socket.get(), laptop::OpenAnswer{open(client, request->service)});
    }
    return false;
}

int LaptopServer::writeProperty(const laptop::PropertyWrite& write) {
    if (write.service >= registry().size()) return ENODEV;
    const Role role = registry()[write.service].role;
    if (role != Role::accelerometerDriver) return 0;
    say(write.key + " = " + std::to_string(write.value));
    return driver.write(write.key, write.value);
}

int LaptopServer::open(Client& client, std::uint8_t service) {
    if (service >= registry().size() || registry()[service].role != Role::accelerometer) return ENODEV;
    if (openError != 0) return openError;
    if (client.hasOpened) return EBUSY;
    client.hasOpened = true;
    driver.deviceOpened();
    say("client " + std::to_string(client.number) + " opened the accelerometer");
    return 0;
}

void LaptopServer::report(std::span<const std::uint8_t> bytes) {
    std::array<std::uint8_t, 1 + laptop::maximumReport> packet = {laptop::reportMark};
    std::ranges::copy(bytes, packet.begin() + 1);
    for (Client& client : clients) {
        if (client.hasOpened) send(client, std::span(packet).first(1 + bytes.size()));
    }
    forgetGone();
}

void LaptopServer::send(Client& client, std::span<const std::uint8_t> packet) {
    if (::send(client.socket.get(), packet.data(), packet.size(), MSG_DONTWAIT | MSG_NOSIGNAL) >= 0) {
        ++client.sent;
    } else if (errno == EAGAIN || errno == EWOULDBLOCK || errno == ENOBUFS || errno == EINTR) {
        ++client.dropped;
    } else {
        client.gone = true;
    }
}

void LaptopServer::forgetGone() {
    for (const Client& client : clients) {
        if (!client.gone) continue;
        if (client.hasOpened) driver.deviceClosed();
        say("client " + std::to_string(client.number) + " left after " + std::to_string(client.sent) + " reports, " +
            std::to_string(client.dropped) + " dropped");
    }
    std::erase_if(clients, [](const Client& client) { return client.gone; });
}

} // namespace quiverly
