#include "tools/simulate/LaptopServer.h"

#include <gtest/gtest.h>
#include <sys/socket.h>

#include <cerrno>

#include "laptop/SocketPlace.h"
#include "laptop/transport.h"
#include "sockets/input.h"
#include "sockets/user_socket.h"
#include "support/Listener.h"
#include "support/LiveLaptop.h"
#include "support/RuntimeFolder.h"
#include "support/Waiting.h"

namespace quiverly {
namespace {

using Bytes = std::vector<std::uint8_t>;

// A client of the running laptop, which keeps the protocol or breaks it.
class Client {
public:
    Client() {
        const auto address = SocketAddress::ofFile(laptop::SocketPlace::ofThisUser().socket());
        EXPECT_EQ(::connect(socket.get(), address.get(), address.length()), 0);
    }

    void send(const Bytes& packet) const {
        EXPECT_EQ(::send(socket.get(), packet.data(), packet.size(), MSG_NOSIGNAL), std::ssize(packet));
    }

    auto trySend(const laptop::Message& message) const { return laptop::send(socket.get(), message); }

    // The next packet that is not a report; nothing at the end of the connection.
    std::optional<laptop::Message> receive() const {
        for (;;) {
            pollfd input = inputOf(socket.get());
            EXPECT_TRUE(waitForInput({&input, 1}, std::chrono::minutes(1)));
            std::uint8_t mark = 0;
            if (::recv(socket.get(), &mark, 1, MSG_PEEK) != 1 || mark != laptop::reportMark) break;
            ::recv(socket.get(), &mark, 1, 0);
        }
        return laptop::receive(socket.get()).value_or(std::nullopt);
    }

    void skipServices() const {
        while (std::holds_alternative<laptop::ServiceHello>(receive().value_or(laptop::EndOfServices{}))) {
        }
    }

    // The error number that the laptop answers.
    template<class Answer>
    int ask(const laptop::Message& question) const {
        EXPECT_TRUE(trySend(question));
        const auto message = receive();
        const auto* answer = message ? std::get_if<Answer>(&*message) : nullptr;
        EXPECT_NE(answer, nullptr);
        return answer != nullptr ? answer->error : -1;
    }

    int open(std::uint8_t service) const { return ask<laptop::OpenAnswer>(laptop::OpenRequest{service}); }
    int write(std::uint8_t service, const char* key, std::int32_t value) const {
        return ask<laptop::PropertyAnswer>(laptop::PropertyWrite{.service = service, .key = key, .value = value});
    }

private:
    FileDescriptor socket = packetSocket();
};

// A laptop with a listener that must not be disturbed.
class LaptopServerTest : public testing::Test {
protected:
    LaptopServerTest() { EXPECT_TRUE(listener.starts()); }
    ~LaptopServerTest() override { EXPECT_TRUE(listener.hears()); }

    LiveLaptop laptop;
    Listener listener;
};

TEST_F(LaptopServerTest, AClientThatBreaksTheRulesIsDisconnectedAndNoOther) {
    const struct {
        const char* name;
        Bytes packet;
    } breaches[] = {
        {"an empty packet", {}},
        {"garbage", Bytes(300, 0xEE)},
        {"half a question", {3, 1, 4, 'R', 'e'}},
        {"a question with a byte too many", {5, 0, 0}},
        {"an oversize packet", Bytes(100'000, 1)},
        {"a hello", laptop::encode(laptop::ServiceHello{.className = "AppleSPUHIDDevice", .properties = {}})},
        {"an end of services", laptop::encode(laptop::EndOfServices{})},
        {"an acknowledgement", laptop::encode(laptop::PropertyAnswer{0})},
        {"an answer", laptop::encode(laptop::OpenAnswer{0})},
        {"a report", Bytes(23, laptop::reportMark)},
    };
    for (const auto& [name, packet] : breaches) {
        const Client client;
        client.skipServices();
        client.send(packet);
        EXPECT_FALSE(client.receive()) << name;
        EXPECT_TRUE(listener.hears()) << name;
    }
}

TEST_F(LaptopServerTest, AServiceThatDoesNotExistIsReportedAsNoDevice) {
    const Client client;
    client.skipServices();
    EXPECT_EQ(client.open(255), ENODEV);
    EXPECT_EQ(client.write(255, "ReportInterval", 1000), ENODEV);
    EXPECT_EQ(client.open(LaptopRegistry::driver), ENODEV);
    EXPECT_EQ(client.open(LaptopRegistry::accelerometer), 0);
}

TEST_F(LaptopServerTest, AConnectionOpensTheSensorOnce) {
    const Client client;
    client.skipServices();
    EXPECT_EQ(client.open(LaptopRegistry::accelerometer), 0);
    EXPECT_EQ(client.open(LaptopRegistry::accelerometer), EBUSY);
}

TEST_F(LaptopServerTest, AClientThatAsksAndNeverReadsIsDisconnected) {
    const Client client;
    EXPECT_TRUE(waitUntil([&] {
        const auto sent = client.trySend(laptop::OpenRequest{255});
        return !sent && sent.error() == std::errc::broken_pipe;
    }));
}

TEST_F(LaptopServerTest, AClientThatLeavesAtOnceDisturbsNoOther) {
    for (int count = 0; count < 100; ++count) {
        const Client client;
        client.send(laptop::encode(laptop::OpenRequest{LaptopRegistry::accelerometer}));
    }
}

} // namespace
} // namespace quiverly
