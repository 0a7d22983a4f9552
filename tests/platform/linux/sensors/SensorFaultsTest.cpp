// System calls that fail while the reader asks and listens. The calls of this program go through those below, which
// fail on the test's thread as often as the test says; the simulated laptop lives on another thread.

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/socket.h>

#include <cerrno>
#include <chrono>
#include <limits>

#include "platform/hid.h"
#include "sensing/AccelerometerReader.h"
#include "support/LiveLaptop.h"
#include "support/OpenSensor.h"
#include "support/Waiting.h"

namespace {

// A system call that fails.
struct Fault {
    static constexpr int always = std::numeric_limits<int>::max();

    int error = 0;
    int left = 0;  // so many times more
    int calls = 0; // those that failed included

    bool strikes() {
        ++calls;
        if (left == 0) return false;
        if (left != always) --left;
        errno = error;
        return true;
    }
};

thread_local Fault receiving;
thread_local Fault sending;
thread_local Fault polling;

template<class Call>
Call* following(Call*, const char* name) {
    return reinterpret_cast<Call*>(::dlsym(RTLD_NEXT, name)); // NOLINT: what dlsym() is for
}

} // namespace

extern "C" {

ssize_t recvmsg(int socket, msghdr* message, int flags) {
    static auto* const call = following(&::recvmsg, "recvmsg");
    return receiving.strikes() ? -1 : call(socket, message, flags);
}

ssize_t send(int socket, const void* bytes, size_t length, int flags) {
    static auto* const call = following(&::send, "send");
    return sending.strikes() ? -1 : call(socket, bytes, length, flags);
}

int ppoll(pollfd* inputs, nfds_t count, const timespec* limit, const sigset_t* signals) {
    static auto* const call = following(&::ppoll, "ppoll");
    return polling.strikes() ? -1 : call(inputs, count, limit, signals);
}
}

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

    // How often the run loop returns, and `fault` strikes, in a millisecond.
    double callsInAMillisecond(Fault& fault) {
        using Clock = std::chrono::steady_clock;
        const auto begin = Clock::now();
        const auto elapsed = [&] { return std::chrono::duration<double, std::milli>(Clock::now() - begin).count(); };
        fault.calls = 0;
        int returns = 0;
        for (; elapsed() < 100; ++returns) hid::runLoop(0.02);
        return (fault.calls + returns) / elapsed();
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

TEST_F(SensorFaultsTest, ReportsGoOnAfterWaitsThatFailed) {
    for (const int error : passingErrors) {
        polling = {.error = error, .left = 10};
        EXPECT_TRUE(hears()) << error;
        EXPECT_EQ(polling.left, 0) << error;
    }
}

TEST_F(SensorFaultsTest, ReadsThatKeepFailingAreTriedOnceAMillisecondAndReportsGoOnAfterThem) {
    for (const int error : passingErrors) {
        receiving = {.error = error, .left = Fault::always};
        EXPECT_LE(callsInAMillisecond(receiving), 3.0) << error;
        receiving = {};
        EXPECT_TRUE(hears()) << error;
    }
}

TEST_F(SensorFaultsTest, WaitsThatKeepFailingAreTriedOnceAMillisecondAndReportsGoOnAfterThem) {
    for (const int error : passingErrors) {
        polling = {.error = error, .left = Fault::always};
        EXPECT_LE(callsInAMillisecond(polling), 3.0) << error;
        polling = {};
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
