#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <set>
#include <thread>

#include "engine/Inspector.h"
#include "platform/virtual/VirtualPlatform.h"
#include "platform/virtual/sensor_report.h"
#include "support/Waiting.h"

namespace quiverly {
namespace {

// The reader with a real sensor thread, and reports that flow without end on a thread of their own.
class AccelerometerThreadTest : public testing::Test {
protected:
    AccelerometerThreadTest() {
        platform.registry.connectAccelerometer();
        platform.threads.real = true;
    }
    ~AccelerometerThreadTest() override { stopReports(); }

    void startReports() {
        source = std::thread([this] {
            while (flowing) {
                if (!platform.registry.deliver(atRest)) std::this_thread::yield();
            }
        });
    }

    void stopReports() {
        flowing = false;
        if (source.joinable()) source.join();
    }

    const std::vector<std::uint8_t> atRest = sensorReport(0, 0, 1);
    VirtualPlatform platform;
    AccelerometerReader reader;

private:
    std::atomic<bool> flowing = true;
    std::thread source;
};

TEST_F(AccelerometerThreadTest, SamplesAreDeliveredOnTheSensorThread) {
    std::atomic<const Thread*> deliverer = nullptr;
    reader.onSample = [&](double, double, double) { deliverer = VirtualThreads::current(); };
    startReports();
    ASSERT_TRUE(reader.start());
    waitUntil([&] { return deliverer != nullptr; });
    EXPECT_EQ(deliverer, Inspector::hidThread(reader));
    stopReports();
}

TEST_F(AccelerometerThreadTest, TheReceiverMayBeReplacedWhileReportsFlowAndLivesUntilItsCallReturns) {
    std::atomic<std::int64_t> received = 0;
    std::atomic<std::int64_t> receivers = 0; // that live
    struct Counted {
        explicit Counted(std::atomic<std::int64_t>& count) : count(count) { ++count; }
        ~Counted() { --count; }
        Counted(const Counted&) = delete;
        Counted& operator=(const Counted&) = delete;
        std::atomic<std::int64_t>& count;
    };
    startReports();
    ASSERT_TRUE(reader.start());
    std::int64_t replacements = 0;
    waitUntil([&] {
        reader.onSample = [&, counted = std::make_shared<Counted>(receivers)](double, double, double z) {
            EXPECT_EQ(z, 1.0);
            EXPECT_GE(counted->count, 1);
            ++received;
        };
        return ++replacements >= 2'000 && received >= 200;
    });
    reader.onSample = nullptr;
    reader.stop();
    stopReports();
    waitUntil([&] { return receivers == 0; });
}

TEST_F(AccelerometerThreadTest, AStopFollowedAtOnceByAStartNeverLetsTwoThreadsDecode) {
    std::atomic<int> decoding = 0;
    std::atomic<std::int64_t> samples = 0;
    reader.onSample = [&](double, double, double) {
        EXPECT_EQ(++decoding, 1);
        ++samples;
        --decoding;
    };
    startReports();
    ASSERT_TRUE(reader.start());
    for (int cycle = 0; cycle < 300; ++cycle) {
        const std::int64_t before = samples;
        if (cycle % 3 == 0) waitUntil([&] { return samples > before; });
        reader.stop();
        ASSERT_TRUE(reader.start());
        ASSERT_EQ(platform.threads.live(), 1U); // the thread before has ended and was waited for
    }
    reader.stop();
    stopReports();
    ASSERT_TRUE(reader.start()); // waits for the thread before
    EXPECT_EQ(Inspector::decimationCounter(reader), platform.registry.reportsDelivered());
    EXPECT_EQ(samples, platform.registry.reportsDelivered() / 8);
}

TEST_F(AccelerometerThreadTest, DestructionWaitsForTheThreadAndClosesTheDevice) {
    startReports();
    for (int round = 0; round < 50; ++round) {
        {
            AccelerometerReader shortLived;
            std::atomic<bool> heard = false;
            shortLived.onSample = [&](double, double, double) { heard = true; };
            ASSERT_TRUE(shortLived.start());
            if (round % 2 == 0) waitUntil([&] { return heard.load(); });
            if (round % 5 == 0) shortLived.stop();
        }
        EXPECT_EQ(platform.threads.live(), 0U);
        EXPECT_FALSE(platform.registry.deviceIsOpen());
        EXPECT_EQ(platform.registry.lentObjects(), 0);
    }
    stopReports();
}

TEST_F(AccelerometerThreadTest, WithoutAnyReportTheThreadStillEnds) {
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
        AccelerometerReader shortLived;
        ASSERT_TRUE(shortLived.start());
    }
    EXPECT_TRUE(onMain.contains("open 1"));
    EXPECT_TRUE(onMain.contains("register 1 256"));
    EXPECT_TRUE(onMain.contains("set 0 ReportInterval 1000"));
    EXPECT_TRUE(onSensor.contains("schedule 1"));
    EXPECT_TRUE(onSensor.contains("unschedule 1"));
    EXPECT_TRUE(onSensor.contains("close 1"));
}

// The whole road with a real sensor thread: the engine goes while its thread still queues samples.
TEST_F(AccelerometerThreadTest, TheEngineMayGoWhileReportsFlow) {
    startReports();
    for (int round = 0; round < 50; ++round) {
        BonkoEngine engine;
        engine.start();
        ASSERT_TRUE(engine.isRunning());
        waitUntil([&] {
            platform.mainQueue.drain();
            return engine.slapCount >= 1;
        });
    }
    stopReports();
    platform.mainQueue.drain();
    EXPECT_FALSE(platform.registry.deviceIsOpen());
}

} // namespace
} // namespace quiverly
