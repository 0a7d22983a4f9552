#include "platform/linux/sensors/ReportReceiver.h"

#include <gtest/gtest.h>
#include <sys/socket.h>

#include <chrono>
#include <memory>
#include <vector>

#include "laptop/transport.h"
#include "sockets/FileDescriptor.h"

namespace quiverly {
namespace {

using namespace std::chrono_literals;
using Bytes = std::vector<std::uint8_t>;

// A receiver at the one end of a connection, and the other end.
class ReportReceiverTest : public testing::Test {
protected:
    ReportReceiverTest() {
        int ends[2];
        EXPECT_EQ(::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends), 0);
        near = FileDescriptor(ends[0]);
        far = FileDescriptor(ends[1]);
    }

    void send(const Bytes& report) { ASSERT_TRUE(laptop::sendReport(far.get(), report)); }

    // Those that come within a time that is long when all that is to come waits.
    std::vector<Bytes> received(std::chrono::nanoseconds longest = 10s) {
        std::vector<Bytes> copies;
        const auto reports = receiver().receive(longest);
        EXPECT_TRUE(reports);
        for (const auto report : reports.value_or(ReportReceiver::Reports())) {
            copies.emplace_back(report.begin(), report.end());
        }
        return copies;
    }

    ReportReceiver& receiver() {
        if (!existing) existing = std::make_unique<ReportReceiver>(near.get());
        return *existing;
    }

    FileDescriptor near;
    FileDescriptor far;

private:
    std::unique_ptr<ReportReceiver> existing;
};

TEST_F(ReportReceiverTest, AReportThatWaitsIsTakenAtOnce) {
    send({1, 2, 3});
    EXPECT_EQ(received(), (std::vector<Bytes>{{1, 2, 3}}));
}

TEST_F(ReportReceiverTest, ReportsThatWaitAreTakenTogetherInTheirOrder) {
    send({1});
    send({});
    send(Bytes(256, 7));
    EXPECT_EQ(received(), (std::vector<Bytes>{{1}, {}, Bytes(256, 7)}));
}

TEST_F(ReportReceiverTest, WhatDoesNotFitInOneGoComesWithTheNext) {
    for (std::uint8_t number = 0; number < 20; ++number) send({number});
    std::vector<Bytes> all;
    while (all.size() < 20) {
        const auto some = received();
        ASSERT_FALSE(some.empty());
        all.insert(all.end(), some.begin(), some.end());
    }
    for (std::uint8_t number = 0; number < 20; ++number) EXPECT_EQ(all[number], Bytes{number});
}

TEST_F(ReportReceiverTest, WithoutAReportTheWaitEnds) {
    EXPECT_TRUE(received(1ms).empty());
    EXPECT_TRUE(received(0ms).empty());
}

TEST_F(ReportReceiverTest, APacketThatIsNotAReportIsIgnored) {
    ASSERT_TRUE(laptop::send(far.get(), laptop::OpenAnswer{0}));
    EXPECT_TRUE(received().empty());
    ASSERT_TRUE(laptop::send(far.get(), laptop::OpenAnswer{0}));
    send({1});
    EXPECT_EQ(received(), std::vector<Bytes>{{1}});
}

TEST_F(ReportReceiverTest, APacketThatIsTooLongIsCut) {
    Bytes packet(300, 5);
    packet[0] = laptop::reportMark;
    ASSERT_EQ(::send(far.get(), packet.data(), packet.size(), 0), std::ssize(packet));
    EXPECT_EQ(received(), std::vector<Bytes>{Bytes(256, 5)});
}

TEST_F(ReportReceiverTest, TheEndOfTheConnectionFollowsTheLastReports) {
    send({1});
    send({2});
    far.reset();
    EXPECT_EQ(received(), (std::vector<Bytes>{{1}, {2}}));
    const auto end = receiver().receive(10s);
    ASSERT_FALSE(end);
    EXPECT_EQ(end.error(), std::errc::connection_reset);
}

TEST_F(ReportReceiverTest, WhatIsNotASocketIsAnError) {
    near = FileDescriptor();
    const auto reports = receiver().receive(10s);
    ASSERT_FALSE(reports);
    EXPECT_EQ(reports.error(), std::errc::bad_file_descriptor);
}

} // namespace
} // namespace quiverly
