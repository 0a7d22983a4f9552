#pragma once

#include <gtest/gtest.h>
#include <sys/socket.h>

#include <atomic>
#include <filesystem>
#include <functional>
#include <list>
#include <span>
#include <thread>
#include <utility>

#include "laptop/SocketPlace.h"
#include "laptop/transport.h"
#include "sockets/FileDescriptor.h"
#include "sockets/input.h"
#include "sockets/user_socket.h"

namespace quiverly {

// Whatever a test wants to find at the simulated laptop's address, on threads of this program.
class FakeLaptop {
public:
    // Lives through one connection, on a thread of its own; the connection is closed when it returns. Reading and
    // waiting end when the fake laptop does.
    using Serve = std::function<void(int socket)>;

    explicit FakeLaptop(Serve serve, laptop::SocketPlace place = laptop::SocketPlace::ofThisUser())
        : serve(std::move(serve)), place(std::move(place)) {
        const auto address = SocketAddress::ofFile(this->place.socket());
        EXPECT_EQ(::bind(listener.get(), address.get(), address.length()), 0);
        EXPECT_EQ(::listen(listener.get(), 100), 0);
        acceptor = std::thread([this] { acceptAll(); });
    }

    ~FakeLaptop() {
        ::shutdown(listener.get(), SHUT_RDWR);
        acceptor.join();
        for (Connection& connection : connections) {
            ::shutdown(connection.socket.get(), SHUT_RDWR);
            connection.thread.join();
        }
        std::filesystem::remove(place.socket());
    }

    FakeLaptop(const FakeLaptop&) = delete;
    FakeLaptop& operator=(const FakeLaptop&) = delete;

    int accepted() const { return count; }

    // What a laptop that keeps the rules says on a connection, each message handed to `send`, until that answers false.
    static void serveByTheRules(int socket, const std::function<bool(const laptop::Message&)>& send) {
        const laptop::ServiceHello driver{.className = "AppleSPUHIDDriver", .properties = {}};
        const laptop::ServiceHello device{.className = "AppleSPUHIDDevice",
                                          .properties = {{"PrimaryUsagePage", 0xFF00}, {"PrimaryUsage", 3}}};
        if (!send(driver) || !send(device) || !send(laptop::EndOfServices{})) return;
        for (;;) {
            const auto question = nextMessage(socket);
            if (!question) return;
            const bool isOpen = std::holds_alternative<laptop::OpenRequest>(*question);
            if (!send(isOpen ? laptop::Message(laptop::OpenAnswer{}) : laptop::PropertyAnswer{})) return;
        }
    }

    static void serveByTheRules(int socket) {
        serveByTheRules(socket, [socket](const auto& message) { return laptop::send(socket, message).has_value(); });
    }

    // Nothing at the end of the connection.
    static std::optional<laptop::Message> nextMessage(int socket) {
        pollfd input = inputOf(socket);
        waitForInput({&input, 1}, std::chrono::minutes(1));
        return laptop::receive(socket).value_or(std::nullopt);
    }

    static void waitForTheEnd(int socket) {
        while (nextMessage(socket)) {
        }
    }

    static void sendBytes(int socket, std::span<const std::uint8_t> packet) {
        ::send(socket, packet.data(), packet.size(), MSG_NOSIGNAL);
    }

private:
    struct Connection {
        FileDescriptor socket;
        std::thread thread;
    };

    void acceptAll() {
        for (;;) {
            FileDescriptor socket(::accept4(listener.get(), nullptr, nullptr, SOCK_CLOEXEC));
            if (!socket) return;
            ++count;
            Connection& connection = connections.emplace_back();
            connection.socket = std::move(socket);
            connection.thread = std::thread([this, number = connection.socket.get()] {
                serve(number);
                ::shutdown(number, SHUT_RDWR);
            });
        }
    }

    Serve serve;
    laptop::SocketPlace place;
    FileDescriptor listener{::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0)};
    std::thread acceptor;
    std::list<Connection> connections; // the acceptor's until it has ended
    std::atomic<int> count = 0;
};

} // namespace quiverly
