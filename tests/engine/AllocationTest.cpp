#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <vector>

#include "engine/Inspector.h"
#include "platform/virtual/VirtualPlatform.h"
#include "platform/virtual/sensor_report.h"
#include "support/counted_allocations.h"

namespace quiverly {
namespace {

// The road as it flows, all on one thread: 1,000 reports a second go through here.
class AllocationTest : public testing::Test {
protected:
    AllocationTest() {
        platform.registry.connectAccelerometer();
        engine.start();
        for (int round = 0; round < 2; ++round) { // into the steady state, past the slap of the very first sample
            deliver(burst * 8);
            platform.mainQueue.drain();
        }
    }

    void deliver(int reports) {
        for (int count = 0; count < reports; ++count) delivered += platform.registry.deliver(atRest) ? 1 : 0;
    }

    static constexpr int burst = 10; // samples that wait together at most
    const std::vector<std::uint8_t> atRest = sensorReport(0, 0, 1);
    VirtualPlatform platform;
    BonkoEngine engine;
    AccelerometerReader& reader = Inspector::reader(engine);
    SlapDetector& detector = Inspector::detector(engine);
    int delivered = 0;
};

TEST_F(AllocationTest, AllocationsAreCounted) {
    std::vector<int> numbers;
    EXPECT_EQ(allocationsDuring([&] { numbers.resize(100); }), 1);
}

TEST_F(AllocationTest, ASkippedReportAllocatesNothing) {
    EXPECT_EQ(allocationsDuring([&] { deliver(7); }), 0);
}

TEST_F(AllocationTest, ADecodedReportWithoutAReceiverAllocatesNothing) {
    reader.onSample = nullptr;
    EXPECT_EQ(allocationsDuring([&] { deliver(80); }), 0);
}

TEST_F(AllocationTest, ADroppedSampleAllocatesNothing) {
    const auto tooMuch = sensorReport(25, 0, 0);
    EXPECT_EQ(allocationsDuring([&] {
                  for (int count = 0; count < 80; ++count) platform.registry.deliver(tooMuch);
              }),
              0);
}

TEST_F(AllocationTest, ASampleAllocatesItsOneJobOnItsWayToTheMainQueueAndNothingThere) {
    for (int round = 0; round < 100; ++round) {
        delivered = 0;
        EXPECT_EQ(allocationsDuring([&] { deliver(burst * 8); }), burst);
        EXPECT_EQ(delivered, burst * 8);
        EXPECT_EQ(allocationsDuring([&] { platform.mainQueue.drain(); }), 0);
    }
}

TEST_F(AllocationTest, ProcessAllocatesNothingAlsoWhenItFiresWithoutAReceiver) {
    detector.onSlap = nullptr;
    detector.cooldown = 0;
    const auto fired = platform.calendar.now + std::chrono::seconds(1);
    platform.calendar.now = fired;
    EXPECT_EQ(allocationsDuring([&] {
                  for (int sample = 0; sample < 1000; ++sample) detector.process(0, sample % 2, 1);
              }),
              0);
    EXPECT_EQ(Inspector::lastFire(detector), fired);
}

TEST(ChangePublisherAllocationTest, ObserversThatDiedTakeNoRoom) {
    ChangePublisher publisher;
    const auto comeAndGo = [&] { publisher.subscribe([] {}).reset(); };
    comeAndGo();
    EXPECT_EQ(allocationsDuring([&] {
                  for (int count = 0; count < 1000; ++count) comeAndGo();
              }),
              1000); // that of each subscription, and none for a list that grows
}

} // namespace
} // namespace quiverly
