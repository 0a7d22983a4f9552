#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>

#include "platform/virtual/VirtualPlatform.h"
#include "sensing/AccelerometerReader.h"
#include "support/ReportFlow.h"
#include "support/Waiting.h"

namespace quiverly {
namespace {

// Readers with a real sensor thread. Each is declared after what its receiver touches, so that its thread ends before.
class AccelerometerThreadTest : public testing::Test {
protected:
    AccelerometerThreadTest() {
        platform.registry.connectAccelerometer();
        platform.threads.real = true;
    }

    VirtualPlatform platform;
};

TEST_F(AccelerometerThreadTest, SamplesAreDeliveredOnTheSensorThread) {
    std::atomic<const Thread*> deliverer = nullptr;
    AccelerometerReader reader;
    reader.onSample = [&](double, double, double) { deliverer = VirtualThreads::current(); };
    const ReportFlow flow(platform);
    ASSERT_TRUE(reader.start());
    EXPECT_TRUE(waitUntil([&] { return deliverer != nullptr; }));
}

// Tells when the receiver that owns it has died.
class Life {
public:
    explicit Life(std::atomic<bool>& over) : over(over) {}
    ~Life() { over = true; }
    Life(const Life&) = delete;
    Life& operator=(const Life&) = delete;

private:
    std::atomic<bool>& over;
};

TEST_F(AccelerometerThreadTest, AReceiverThatIsReplacedDuringItsCallLivesUntilItReturns) {
    std::atomic<bool> called = false;
    std::atomic<bool> replaced = false;
    std::atomic<bool> over = false;
    AccelerometerReader reader;
    reader.onSample = [&, life = std::make_shared<Life>(over)](double, double, double) {
        const auto& receiverIsOver = over; // what is read after the replacement must not stand in the receiver
        called = true;
        waitUntil([&replaced = replaced] { return replaced.load(); });
        EXPECT_FALSE(receiverIsOver);
    };
    const ReportFlow flow(platform);
    ASSERT_TRUE(reader.start());
    ASSERT_TRUE(waitUntil([&] { return called.load(); }));
    reader.onSample = nullptr;
    replaced = true;
    EXPECT_TRUE(waitUntil([&] { return over.load(); }));
}

TEST_F(AccelerometerThreadTest, TheReceiverMayBeReplacedAgainAndAgainWhileReportsFlow) {
    std::atomic<std::int64_t> received = 0;
    AccelerometerReader reader;
    const ReportFlow flow(platform);
    ASSERT_TRUE(reader.start());
    std::int64_t replacements = 0;
    EXPECT_TRUE(waitUntil([&] {
        reader.onSample = [&](double, double, double z) {
            EXPECT_EQ(z, 1.0);
            ++received;
        };
        return ++replacements >= 2'000 && received >= 200;
    }));
}

TEST_F(AccelerometerThreadTest, AStopFollowedAtOnceByAStartNeverLetsTwoThreadsDecode) {
    std::atomic<int> decoding = 0;
    std::atomic<std::int64_t> samples = 0;
    AccelerometerReader reader;
    reader.onSample = [&](double, double, double) {
        EXPECT_EQ(++decoding, 1);
        ++samples;
        --decoding;
    };
    ReportFlow flow(platform);
    ASSERT_TRUE(reader.start());
    for (int cycle = 0; cycle < 300; ++cycle) {
        const std::int64_t before = samples;
        if (cycle % 3 == 0) {
            ASSERT_TRUE(waitUntil([&] { return samples > before; }));
        }
        reader.stop();
        ASSERT_TRUE(reader.start());
        ASSERT_EQ(platform.threads.live(), 1U); // the thread before has ended and was waited for
    }
    reader.stop();
    flow.end();
    ASSERT_TRUE(reader.start()); // waits for the thread before
    EXPECT_EQ(samples, platform.registry.reportsDelivered() / 8);
}

TEST_F(AccelerometerThreadTest, DestructionWaitsForTheThreadAndClosesTheDevice) {
    const ReportFlow flow(platform);
    for (int round = 0; round < 50; ++round) {
        {
            std::atomic<bool> heard = false;
            AccelerometerReader reader;
            reader.onSample = [&](double, double, double) { heard = true; };
            ASSERT_TRUE(reader.start());
            if (round % 2 == 0) {
                ASSERT_TRUE(waitUntil([&] { return heard.load(); }));
            }
            if (round % 5 == 0) reader.stop();
        }
        EXPECT_EQ(platform.threads.live(), 0U);
        EXPECT_FALSE(platform.registry.deviceIsOpen());
        EXPECT_EQ(platform.registry.lentObjects(), 0);
    }
}

TEST_F(AccelerometerThreadTest, WithoutAnyReportTheThreadStillEnds) {
    AccelerometerReader reader;
    ASSERT_TRUE(reader.start());
    reader.stop();
    ASSERT_TRUE(reader.start());
    EXPECT_EQ(platform.threads.live(), 1U);
}

TEST_F(AccelerometerThreadTest, ThePropertiesAreSetAndTheDeviceOpenedOnTheMainThreadAndClosedOnTheSensorThread) {
    std::mutex mutex;
    std::set<std::string> onMain;
    std::set<std::string> onSensor;
    platform.registry.onCall = [&, main = std::this_thread::get_id()](const std::string& call) {
        const std::lock_guard lock(mutex);
        (std::this_thread::get_id() == main ? onMain : onSensor).insert(call);
    };
    {
        AccelerometerReader reader;
        ASSERT_TRUE(reader.start());
    }
    EXPECT_TRUE(onMain.contains("open 1"));
    EXPECT_TRUE(onMain.contains("register 1 256"));
    EXPECT_TRUE(onMain.contains("set 0 ReportInterval 1000"));
    EXPECT_TRUE(onSensor.contains("schedule 1"));
    EXPECT_TRUE(onSensor.contains("unschedule 1"));
    EXPECT_TRUE(onSensor.contains("close 1"));
}

} // namespace
} // namespace quiverly
