#include "tools/simulate/LaptopServer.h"

#include <gtest/gtest.h>
#include <sys/socket.h>

#include <cerrno>

#include "sockets/input.h"
#include "sockets/user_socket.h"
#include "support/Listener.h"
#include "support/LiveLaptop.h"
#include "support/RuntimeFolder.h"
#include "support/Waiting.h"
#include "tools/simulate/registry.h"

namespace quiverly {
namespace {

using Bytes = std::vector<std::uint8_t>;

// One who talks to the laptop that is there, by the rules or against them.
class Client {
public:
    Client() {
        const auto address = SocketAddress::ofFile(laptop::socketPlace().socket());
        EXPECT_EQ(::connect(socket.get(), address.get(), address.length()), 0);
    }

    void send(const Bytes& packet) const {
        EXPECT_EQ(::send(socket.get(), packet.data(), packet.size(), MSG_NOSIGNAL), std::ssize(packet));
    }

    // False when the packet did not fit, or when the laptop has ended the connection.
    bool trySend(const laptop::Message& message) const { return laptop::send(socket.get(), message); }

    // The next packet that is no report; nothing at the end of the connection.
    std::optional<laptop::Message> receive() const {
        for (;;) {
            pollfd input = inputOf(socket.get());
            EXPECT_TRUE(waitForInput({&input, 1}, std::chrono::minutes(1)));
            std::uint8_t mark = 0;
            if (::recv(socket.get(), &mark, 1, MSG_PEEK) != 1 || mark != laptop::reportMark) break;
            ::recv(socket.get(), &mark, 1, 0);
        }
        return laptop::receive(socket.get()).message;
    }

    void passOverServices() const {
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

// The first service of that role.
std::uint8_t serviceOf(Role role) {
    const auto entries = registry();
    const auto found = std::ranges::find(entries, role, &RegistryEntry::role);
    return static_cast<std::uint8_t>(found - entries.begin());
}

// A laptop that somebody listens to all the while.
class LaptopServerTest : public testing::Test {
protected:
    LaptopServerTest() { EXPECT_TRUE(listener.starts()); }
    ~LaptopServerTest() override { EXPECT_TRUE(listener.hears()); }

    LiveLaptop laptop;
    Listener listener;
};

TEST_F(LaptopServerTest, WhoeverBreaksTheRulesIsDisconnectedAndNobodyElse) {
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
        client.passOverServices();
        client.send(packet);
        EXPECT_FALSE(client.receive()) << name;
        EXPECT_TRUE(listener.hears()) << name;
    }
}

TEST_F(LaptopServerTest, AServiceThatDoesNotExistIsNoDevice) {
    const Client client;
    client.passOverServices();
    EXPECT_EQ(client.open(255), ENODEV);
    EXPECT_EQ(client.write(255, "ReportInterval", 1000), ENODEV);
    EXPECT_EQ(client.open(serviceOf(Role::decoy)), ENODEV);
    EXPECT_EQ(client.open(serviceOf(Role::accelerometer)), 0);
}

TEST_F(LaptopServerTest, AConnectionOpensTheSensorOnce) {
    const Client client;
    client.passOverServices();
    EXPECT_EQ(client.open(serviceOf(Role::accelerometer)), 0);
    EXPECT_EQ(client.open(serviceOf(Role::accelerometer)), EBUSY);
}

TEST_F(LaptopServerTest, AClientThatAsksAndNeverReadsIsDisconnected) {
    const Client client;
    EXPECT_TRUE(waitUntil([&] { return !client.trySend(laptop::OpenRequest{255}) && errno == EPIPE; }));
}

TEST_F(LaptopServerTest, AClientThatLeavesAtOnceDisturbsNobody) {
    for (int count = 0; count < 100; ++count) {
        const Client client;
        client.send(laptop::encode(laptop::OpenRequest{serviceOf(Role::accelerometer)}));
    }
}

TEST(LaptopServerWakingTest, AWriteToAnotherDriverThanTheAccelerometersWakesNothing) {
    const RuntimeFolder folder;
    LaptopServer server([](const std::string&) {});
    ASSERT_EQ(server.appear(), std::nullopt);
    const auto serve = [&server] {
        std::vector<pollfd> inputs;
        server.addInputs(inputs);
        EXPECT_TRUE(waitForInput(inputs, std::chrono::minutes(1)));
        server.handleInputs(inputs);
    };
    const Client client;
    serve();
    client.trySend(laptop::OpenRequest{serviceOf(Role::accelerometer)});
    serve();
    for (const Role role : {Role::decoy, Role::accelerometerDriver}) {
        for (const char* key : {"SensorPropertyReportingState", "SensorPropertyPowerState", "ReportInterval"}) {
            EXPECT_FALSE(server.isReporting()) << key;
            client.trySend(laptop::PropertyWrite{.service = serviceOf(role), .key = key, .value = 1});
            serve();
        }
    }
    EXPECT_TRUE(server.isReporting());
}

} // namespace
} // namespace quiverly
