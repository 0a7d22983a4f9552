#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "engine/BonkoEngine.h"
#include "platform/virtual/VirtualPlatform.h"
#include "platform/virtual/sensor_report.h"
#include "support/counted_allocations.h"

namespace quiverly {
namespace {

TEST(CountedAllocationsTest, AllocationsAreCounted) {
    std::vector<int> numbers;
    EXPECT_EQ(allocationsDuring([&] { numbers.resize(100); }), 1);
}

// The road as it flows, all on one thread: 1,000 reports a second go through here.

class ReaderAllocationTest : public testing::Test {
protected:
    ReaderAllocationTest() {
        platform.registry.connectAccelerometer();
        reader.onSample = [this](double, double, double) { ++samples; };
        EXPECT_TRUE(reader.start());
        deliver(8, atRest);
    }

    void deliver(int reports, const std::vector<std::uint8_t>& report) {
        for (int count = 0; count < reports; ++count) ASSERT_TRUE(platform.registry.deliver(report));
    }

    const std::vector<std::uint8_t> atRest = sensorReport(0, 0, 1);
    VirtualPlatform platform;
    int samples = 0;
    AccelerometerReader reader;
};

TEST_F(ReaderAllocationTest, ASkippedReportAllocatesNothing) {
    EXPECT_EQ(allocationsDuring([&] { deliver(7, atRest); }), 0);
    EXPECT_EQ(samples, 1);
}

TEST_F(ReaderAllocationTest, ASampleAllocatesNothing) {
    EXPECT_EQ(allocationsDuring([&] { deliver(80, atRest); }), 0);
    EXPECT_EQ(samples, 11);
}

TEST_F(ReaderAllocationTest, ASampleWithoutAReceiverAllocatesNothing) {
    reader.onSample = nullptr;
    EXPECT_EQ(allocationsDuring([&] { deliver(80, atRest); }), 0);
}

TEST_F(ReaderAllocationTest, ADroppedSampleAllocatesNothing) {
    const auto tooMuch = sensorReport(25, 0, 0);
    EXPECT_EQ(allocationsDuring([&] { deliver(80, tooMuch); }), 0);
    EXPECT_EQ(samples, 1);
}

TEST(EngineAllocationTest, ASampleAllocatesItsOneJobOnItsWayToTheMainQueueAndNothingThere) {
    constexpr int burst = 10; // samples that wait together
    const auto atRest = sensorReport(0, 0, 1);
    VirtualPlatform platform;
    platform.registry.connectAccelerometer();
    BonkoEngine engine;
    engine.start();
    const auto deliver = [&] {
        for (int count = 0; count < burst * 8; ++count) ASSERT_TRUE(platform.registry.deliver(atRest));
    };
    for (int round = 0; round < 3; ++round) { // past the slap of the first sample, until both lists of jobs have grown
        deliver();
        platform.mainQueue.drain();
    }
    for (int round = 0; round < 100; ++round) {
        EXPECT_EQ(allocationsDuring(deliver), burst);
        EXPECT_EQ(allocationsDuring([&] { platform.mainQueue.drain(); }), 0);
    }
}

TEST(DetectorAllocationTest, ASampleAllocatesNothingSlapOrNot) {
    const VirtualPlatform platform;
    SlapDetector detector;
    int slaps = 0;
    detector.onSlap = [&slaps](double) { ++slaps; };
    detector.cooldown = 0;
    EXPECT_EQ(allocationsDuring([&] {
                  for (int sample = 0; sample < 1000; ++sample) detector.process(0, 0, sample % 100 == 0 ? 1.5 : 1.0);
              }),
              0);
    EXPECT_EQ(slaps, 20); // each jolt, and each return from it
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
