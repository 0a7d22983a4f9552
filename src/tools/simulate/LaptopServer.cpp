#include "tools/simulate/LaptopServer.h"

#include <fcntl.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <chrono>

#include "laptop/transport.h"
#include "sockets/input.h"
#include "sockets/user_socket.h"

namespace quiverly {

namespace {

tl::expected<void, std::error_code> sendHellos(int socket) {
    for (const auto& service : LaptopRegistry::services()) {
        const auto sent = laptop::send(socket, service);
        if (!sent) return sent;
    }
    return laptop::send(socket, laptop::EndOfServices{});
}

std::int32_t errorNumber(const tl::expected<void, std::error_code>& result) {
    return result ? 0 : result.error().value();
}

auto refused(std::errc reason) {
    return tl::unexpected(std::make_error_code(reason));
}

} // namespace

tl::expected<void, std::string> LaptopServer::appear() {
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
    bool failed = false;
    for (std::size_t index = 1; index < inputs.size(); ++index) {
        if (inputs[index].revents != 0 && !handle(clients[index - 1])) failed = true;
    }
    forgetGone();
    if (inputs[0].revents != 0 && !accept()) failed = true;
    if (failed) waitForInput({}, std::chrono::milliseconds(1)); // what is left to do ends the next wait at once
}

// False when the client that waits to be accepted still waits.
bool LaptopServer::accept() {
    FileDescriptor socket(::accept4(listener.descriptor(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (!socket) return turnAway();
    if (!peerIs(socket.get(), ::geteuid())) {
        say("another user's program was turned away");
    } else if (sendHellos(socket.get())) {
        clients.push_back({.socket = std::move(socket), .number = ++clientsSoFar});
        say("client " + std::to_string(clientsSoFar) + " came");
    }
    return true;
}

FileDescriptor LaptopServer::openSpare() {
    return FileDescriptor(::open("/dev/null", O_RDONLY | O_CLOEXEC));
}

// Whether a client waits no more, because it was let in for a moment.
bool LaptopServer::turnAway() {
    if (errno != EMFILE && errno != ENFILE) return false;
    spare.reset();
    const bool accepted(FileDescriptor(::accept4(listener.descriptor(), nullptr, nullptr, SOCK_CLOEXEC)));
    spare = openSpare();
    if (accepted) say("too many open files: a client was turned away");
    return accepted;
}

// False when the client's message could not be read and still waits.
bool LaptopServer::handle(Client& client) {
    const auto message = laptop::receive(client.socket.get());
    if (!message) {
        client.gone = laptop::endsConnection(message.error());
        return client.gone;
    }
    if (*message) client.gone = !answer(client, **message);
    return true;
}

// Whether the client kept the rules.
bool LaptopServer::answer(Client& client, const laptop::Message& message) {
    const int socket = client.socket.get();
    if (const auto* write = std::get_if<laptop::PropertyWrite>(&message)) {
        return laptop::send(socket, laptop::PropertyAnswer{errorNumber(writeProperty(*write))}).has_value();
    }
    if (const auto* request = std::get_if<laptop::OpenRequest>(&message)) {
        return laptop::send(socket, laptop::OpenAnswer{errorNumber(open(client, request->service))}).has_value();
    }
    return false;
}

tl::expected<void, std::error_code> LaptopServer::writeProperty(const laptop::PropertyWrite& write) {
    if (write.service == LaptopRegistry::driver) say(write.key + " = " + std::to_string(write.value));
    return registry.write(write.service, write.key, write.value);
}

tl::expected<void, std::error_code> LaptopServer::open(Client& client, std::uint8_t service) {
    if (service != LaptopRegistry::accelerometer) return refused(std::errc::no_such_device);
    if (!isPermitted) return refused(std::errc::operation_not_permitted);
    if (client.hasOpened) return refused(std::errc::device_or_resource_busy);
    client.hasOpened = true;
    registry.accelerometerOpened();
    say("client " + std::to_string(client.number) + " opened the accelerometer");
    return {};
}

std::int64_t LaptopServer::reader() const {
    const auto client = std::ranges::find(clients, true, &Client::hasOpened);
    return client == clients.end() ? 0 : peerProcess(client->socket.get());
}

void LaptopServer::report(std::span<const std::uint8_t> bytes) {
    for (Client& client : clients) {
        if (client.hasOpened) sendReport(client, bytes);
    }
    forgetGone();
}

void LaptopServer::sendReport(Client& client, std::span<const std::uint8_t> bytes) {
    const auto sent = laptop::sendReport(client.socket.get(), bytes);
    if (sent) {
        ++client.sent;
    } else if (laptop::endsConnection(sent.error())) {
        client.gone = true;
    } else {
        ++client.dropped; // its queue is full
    }
}

void LaptopServer::forgetGone() {
    for (const Client& client : clients) {
        if (!client.gone) continue;
        if (client.hasOpened) registry.accelerometerClosed();
        say("client " + std::to_string(client.number) + " left after " + std::to_string(client.sent) + " reports, " +
            std::to_string(client.dropped) + " dropped");
    }
    std::erase_if(clients, [](const Client& client) { return client.gone; });
}

} // namespace quiverly
