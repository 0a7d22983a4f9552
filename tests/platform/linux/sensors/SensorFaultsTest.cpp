// System calls that fail while the reader asks and listens. The simulated laptop lives on another thread.

#include <gtest/gtest.h>

#include <cerrno>

#include "platform/hid.h"
#include "sensing/AccelerometerReader.h"
#include "support/LiveLaptop.h"
#include "support/OpenSensor.h"
#include "support/SystemCalls.h"
#include "support/Waiting.h"

namespace quiverly {
namespace {

constexpr int passingErrors[] = {EINTR, EIO, ENOMEM, ENOBUFS};

// A laptop whose accelerometer reports to this thread.
class SensorFaultsTest : public testing::Test {
protected:
    SensorFaultsTest() {
        const auto drivers = hid::findServices(hid::matchingClass("AppleSPUHIDDriver"));
        while (const auto driver = hid::nextService(*drivers)) {
            for (const char* key : {"SensorPropertyReportingState", "SensorPropertyPowerState", "ReportInterval"}) {
                hid::setProperty(*driver, key, 1000);
            }
        }
        EXPECT_TRUE(hears());
    }
    ~SensorFaultsTest() override { receiving = sending = polling = {}; }

    // Whether one more report comes within some seconds' worth of slices.
    bool hears() {
        const std::size_t before = sensor.reports.size();
        for (int slice = 0; slice < 40 && sensor.reports.size() == before; ++slice) hid::runLoop(0.25);
        return sensor.reports.size() > before;
    }

    // The run loop rests after each call that fails; for less than a millisecond only at the end of a slice.
    static void expectRestsAfterCalls(const Fault& fault) {
        rests = 0;
        int slices = 0;
        for (; slices < 40 && rests == 0; ++slices) hid::runLoop(0.25); // in a slice nothing may come to be read
        EXPECT_GT(rests, 0) << fault.error;
        EXPECT_LE(fault.calls, rests + 2 * slices) << fault.error;
    }

    const LiveLaptop laptop;
    OpenSensor sensor;
};

TEST_F(SensorFaultsTest, ReportsGoOnAfterReadsThatFailed) {
    for (const int error : passingErrors) {
        receiving = {.error = error, .left = 10};
        EXPECT_TRUE(hears()) << error;
        EXPECT_EQ(receiving.left, 0) << error;
    }
}

TEST_F(SensorFaultsTest, ReportsGoOnAfterRestsThatFailed) {
    for (const int error : passingErrors) {
        receiving = polling = {.error = error, .left = 10};
        EXPECT_TRUE(hears()) << error;
        EXPECT_EQ(polling.left, 0) << error;
    }
}

TEST_F(SensorFaultsTest, ReadsThatKeepFailingAreTriedWithRestsAndReportsGoOnAfterThem) {
    for (const int error : passingErrors) {
        receiving = {.error = error, .left = Fault::always};
        expectRestsAfterCalls(receiving);
        receiving = {};
        EXPECT_TRUE(hears()) << error;
    }
}

TEST_F(SensorFaultsTest, RestsThatFailAreRestsAllTheSame) {
    for (const int error : passingErrors) {
        receiving = polling = {.error = error, .left = Fault::always};
        expectRestsAfterCalls(receiving);
        receiving = polling = {};
        EXPECT_TRUE(hears()) << error;
    }
}

TEST_F(SensorFaultsTest, AStartSucceedsWhenEachCallHasFailedSomeTimes) {
    for (Fault* const fault : {&receiving, &sending, &polling}) {
        for (const int error : passingErrors) {
            EXPECT_TRUE(waitUntil([&] { // on a busy machine the laptop may be silent for too long
                *fault = {.error = error, .left = 10};
                return AccelerometerReader().start();
            })) << error;
            EXPECT_EQ(fault->left, 0) << error;
        }
    }
}

TEST_F(SensorFaultsTest, AStartGivesUpWhenACallIsInterruptedAgainAndAgain) {
    for (Fault* const fault : {&receiving, &sending}) {
        EXPECT_TRUE(waitUntil([] { return AccelerometerReader().start(); })); // the laptop is not taken for silent
        *fault = {.error = EINTR, .left = Fault::always};
        EXPECT_FALSE(AccelerometerReader().start());
        EXPECT_LT(fault->calls, 1000);
        *fault = {};
    }
}

} // namespace
} // namespace quiverly
