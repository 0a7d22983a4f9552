#include "laptop/transport.h"

#include <gtest/gtest.h>
#include <sys/socket.h>

#include <vector>

#include "sockets/FileDescriptor.h"

namespace quiverly::laptop {
namespace {

using Bytes = std::vector<std::uint8_t>;

// The two ends of a connection.
class TransportTest : public testing::Test {
protected:
    TransportTest() {
        int ends[2];
        EXPECT_EQ(::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends), 0);
        near = FileDescriptor(ends[0]);
        far = FileDescriptor(ends[1]);
    }

    void sendBytes(const Bytes& packet) {
        EXPECT_EQ(::send(far.get(), packet.data(), packet.size(), 0), std::ssize(packet));
    }

    FileDescriptor near;
    FileDescriptor far;
};

TEST_F(TransportTest, AMessageArrivesAndThenNothingYet) {
    EXPECT_TRUE(send(far.get(), OpenRequest{3}));
    const auto incoming = receive(near.get());
    ASSERT_TRUE(incoming && *incoming);
    ASSERT_TRUE(std::holds_alternative<OpenRequest>(**incoming));
    EXPECT_EQ(std::get<OpenRequest>(**incoming).service, 3);
    const auto nothing = receive(near.get());
    ASSERT_TRUE(nothing);
    EXPECT_FALSE(*nothing);
}

TEST_F(TransportTest, AConnectionThatTheOtherEndHasClosedIsReset) {
    far.reset();
    const auto message = receive(near.get());
    ASSERT_FALSE(message);
    EXPECT_EQ(message.error(), std::errc::connection_reset);
    EXPECT_FALSE(send(near.get(), EndOfServices{}));
    EXPECT_FALSE(sendReport(near.get(), Bytes{}));
}

TEST_F(TransportTest, APacketThatIsNotAMessageIsABadMessage) {
    for (const std::size_t length : {1UL, maximumMessage, maximumMessage + 1, 100000UL}) {
        sendBytes(Bytes(length));
        const auto message = receive(near.get());
        ASSERT_FALSE(message) << length;
        EXPECT_EQ(message.error(), std::errc::bad_message) << length;
    }
}

TEST_F(TransportTest, SendingToOneWhoDoesNotReadNeverWaits) {
    int sent = 0;
    auto result = send(far.get(), EndOfServices{});
    for (; result; result = send(far.get(), EndOfServices{})) ASSERT_LT(++sent, 100000);
    EXPECT_GT(sent, 0);
    EXPECT_EQ(result.error(), std::errc::resource_unavailable_try_again);
}

} // namespace
} // namespace quiverly::laptop
