// System calls that fail while the laptop serves its clients.

#include <gtest/gtest.h>
#include <sys/socket.h>

#include <cerrno>
#include <string>

#include "laptop/SocketPlace.h"
#include "laptop/transport.h"
#include "sockets/input.h"
#include "sockets/user_socket.h"
#include "support/RuntimeFolder.h"
#include "support/SystemCalls.h"
#include "tools/simulate/LaptopServer.h"

namespace quiverly {
namespace {

constexpr int turns = 20;

// A laptop whose turns the test takes, and a client that has connected.
class LaptopServerFaultsTest : public testing::Test {
protected:
    LaptopServerFaultsTest() {
        EXPECT_TRUE(server.appear());
        const auto address = SocketAddress::ofFile(server.address());
        EXPECT_EQ(::connect(client.get(), address.get(), address.length()), 0);
    }
    ~LaptopServerFaultsTest() override { accepting = receiving = {}; }

    void turn() {
        std::vector<pollfd> inputs;
        server.addInputs(inputs);
        EXPECT_TRUE(waitForInput(inputs, std::chrono::minutes(1)));
        server.handleInputs(inputs);
    }

    void expectARestInEachTurn(const Fault& fault) {
        rests = 0;
        for (int count = 0; count < turns; ++count) turn();
        EXPECT_EQ(rests, turns) << fault.error;
        EXPECT_LE(fault.calls, 2 * turns) << fault.error;
    }

    // The next message that waits for the client.
    std::optional<laptop::Message> received() const { return laptop::receive(client.get()).value_or(std::nullopt); }

    const RuntimeFolder folder;
    LaptopServer server{[](const std::string&) {}};
    const FileDescriptor client = packetSocket();
};

TEST_F(LaptopServerFaultsTest, AClientThatCannotBeAcceptedIsTriedWithRestsAndServedLater) {
    for (const int error : {EMFILE, ENFILE, ENOMEM, ENOBUFS, ECONNABORTED}) {
        accepting = {.error = error, .left = Fault::always};
        expectARestInEachTurn(accepting);
    }
    EXPECT_FALSE(received());
    accepting = {};
    turn();
    EXPECT_TRUE(received());
}

TEST_F(LaptopServerFaultsTest, AClientThatCannotBeReadIsTriedWithRestsAndAnsweredLater) {
    turn();
    EXPECT_TRUE(laptop::send(client.get(), laptop::OpenRequest{LaptopRegistry::accelerometer}));
    for (const int error : {EIO, ENOMEM, ENOBUFS, EINTR}) {
        receiving = {.error = error, .left = Fault::always};
        expectARestInEachTurn(receiving);
    }
    receiving = {};
    turn();
    while (const auto message = received()) {
        if (std::holds_alternative<laptop::OpenAnswer>(*message)) return;
    }
    ADD_FAILURE() << "no answer";
}

} // namespace
} // namespace quiverly
