// The reader over accelerometers in a folder laid out like /sys. What the polling thread asks of the system goes
// through the functions below, which count it and, where the test says so, fail, block or answer something else.

#include "platform/linux/sensors/iio/Poller.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <list>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/hid.h"
#include "sensing/AccelerometerReader.h"
#include "support/AnotherUser.h"
#include "support/FakeSystem.h"
#include "support/Listener.h"
#include "support/LiveLaptop.h"
#include "support/OpenSensor.h"
#include "support/ProcessResources.h"
#include "support/Waiting.h"

namespace {

// What becomes of the reads of attributes while a sensor is polled.
class Driver {
public:
    void fail(int newError) { error = newError; }
    void answer(std::string text) {
        const std::lock_guard lock(mutex);
        replacement = std::move(text);
    }
    void block() {
        const std::lock_guard lock(mutex);
        isBlocked = true;
    }
    void release() {
        const std::lock_guard lock(mutex);
        isBlocked = false;
        released.notify_all();
    }
    void reset() {
        fail(0);
        answer("");
        release();
    }

    // The length that a read yields, or -1; nothing when it is to be left to the system.
    std::optional<ssize_t> read(void* bytes, size_t length) {
        std::unique_lock lock(mutex);
        if (isBlocked) {
            ++blocked;
            released.wait(lock, [this] { return !isBlocked; });
            --blocked;
            std::memcpy(bytes, "0\n", 2); // as a sensor hub that has gone mute
            return 2;
        }
        if (error != 0) {
            errno = error;
            return -1;
        }
        if (replacement.empty()) return std::nullopt;
        const size_t copied = std::min(length, replacement.size());
        std::memcpy(bytes, replacement.data(), copied);
        return static_cast<ssize_t>(copied);
    }

    std::atomic<int> blocked = 0; // reads that wait
    std::atomic<int> reads = 0;
    std::atomic<int> sleeps = 0;
    std::atomic<int> sends = 0;

private:
    std::mutex mutex;
    std::condition_variable released;
    std::atomic<int> error = 0;
    bool isBlocked = false;
    std::string replacement;
};

Driver& driver() {
    static auto& only = *new Driver; // outlives the thread that may wait in it
    return only;
}

template<class Call>
Call* following(Call*, const char* name) {
    return reinterpret_cast<Call*>(::dlsym(RTLD_NEXT, name)); // NOLINT: what dlsym() is for
}

} // namespace

extern "C" {

ssize_t pread(int file, void* bytes, size_t length, off_t offset) {
    static auto* const call = following(&::pread, "pread");
    ++driver().reads;
    const auto answer = driver().read(bytes, length);
    return answer ? *answer : call(file, bytes, length, offset);
}

int clock_nanosleep(clockid_t clock, int flags, const timespec* time, timespec* rest) {
    static auto* const call = following(&::clock_nanosleep, "clock_nanosleep");
    ++driver().sleeps;
    return call(clock, flags, time, rest);
}

ssize_t send(int socket, const void* bytes, size_t length, int flags) {
    static auto* const call = following(&::send, "send");
    ++driver().sends;
    return call(socket, bytes, length, flags);
}
}

namespace quiverly {
namespace {

constexpr double gPerStep = 0.009582 / 9.80665;

class PollerTest : public testing::Test {
protected:
    ~PollerTest() override {
        listener.stop();
        driver().reset();
        EXPECT_TRUE(waitUntil([] { return pollingThreads() == 0; }));
    }

    static std::vector<std::filesystem::path> threadsNamed(const std::string& name) {
        std::vector<std::filesystem::path> found;
        for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
            std::string line;
            std::getline(std::ifstream(task.path() / "comm"), line);
            if (line == name) found.push_back(task.path());
        }
        return found;
    }

    static std::size_t pollingThreads() { return threadsNamed("quiverly-iio").size(); }

    // How often a thread has gone to sleep of its own accord.
    static long sleepsOf(const std::string& thread) {
        const auto found = threadsNamed(thread);
        if (found.size() != 1) throw std::runtime_error("There is not one thread named " + thread);
        std::ifstream status(found.front() / "status");
        for (std::string line; std::getline(status, line);) {
            if (line.starts_with("voluntary_ctxt_switches:")) return std::stol(line.substr(line.find('\t')));
        }
        throw std::runtime_error("No count of " + thread);
    }

    // Starts as often as it takes: on a busy machine the polling thread may be too late to be waited for.
    bool failsToStart(const std::string& code) {
        return waitUntil([&] {
            const bool failed = !listener.start();
            listener.stop();
            return failed && listener.error().ends_with("Code " + code + ".");
        });
    }

    const RuntimeFolder runtime; // without a simulated laptop
    const FakeSystem system;
    const std::filesystem::path sensor = system.addAccelerometer();
    Listener listener;
};

TEST_F(PollerTest, AReaderReceivesTheAcceleration) {
    ASSERT_TRUE(listener.start());
    ASSERT_TRUE(listener.hears(5));
    const auto sample = listener.samples.last();
    EXPECT_NEAR(sample.x, -12 * gPerStep, 1e-5);
    EXPECT_NEAR(sample.y, 25 * gPerStep, 1e-5);
    EXPECT_NEAR(sample.z, 1023 * gPerStep, 1e-5);
}

TEST_F(PollerTest, OffsetsAndScalesOfEachAxisAreApplied) {
    system.set(sensor / "in_accel_x_scale", "0.1");
    system.set(sensor / "in_accel_x_offset", "110");
    system.set(sensor / "in_accel_y_offset", "-25.5");
    ASSERT_TRUE(listener.start());
    ASSERT_TRUE(listener.hears());
    EXPECT_NEAR(listener.samples.last().x, 98 * 0.1 / 9.80665, 1e-5);
    EXPECT_NEAR(listener.samples.last().y, -0.5 * gPerStep, 1e-5);
}

TEST_F(PollerTest, EachReadingArrivesAsEightReports) {
    OpenSensor open;
    ASSERT_EQ(open.opened, hid::success);
    for (std::size_t readings = 1; readings <= 3; ++readings) {
        hid::runLoop(10.0);
        ASSERT_GE(open.reports.size(), 8 * readings);
        ASSERT_EQ(open.reports.size() % 8, 0U);
    }
    for (const auto& report : open.reports) {
        EXPECT_EQ(report.size(), 18U);
        EXPECT_EQ(report, open.reports.front());
    }
}

TEST_F(PollerTest, MotionIsFollowed) {
    ASSERT_TRUE(listener.start());
    system.set(sensor / "in_accel_z_raw", "-2046");
    EXPECT_TRUE(waitUntil([&] { return listener.samples.last().z < -1.9; }));
}

// The samples are counted without a lock, for which the sensor thread would have to wait now and then.
TEST_F(PollerTest, AReadingTakesFiveCallsAndWakesEachThreadOnce) {
    std::atomic<int> samples = 0;
    AccelerometerReader reader;
    reader.onSample = [&](double, double, double) { ++samples; };
    const auto hears = [&](int more) { return waitUntil([&, end = samples + more] { return samples >= end; }); };
    ASSERT_TRUE(reader.start());
    ASSERT_TRUE(hears(10));
    const int reads = driver().reads;
    const int sleeps = driver().sleeps;
    const int sends = driver().sends;
    const long pollerSlept = sleepsOf("quiverly-iio");
    const long readerSlept = sleepsOf("com.jostlix.bon");
    ASSERT_TRUE(hears(200));
    const int readings = driver().sends - sends + 1; // one may be under way
    EXPECT_LE(driver().reads - reads, 3 * readings);
    EXPECT_LE(driver().sleeps - sleeps, readings);
    const int mostWakings = readings + readings / 2; // a sanitizer has the threads wait for each other now and then
    EXPECT_LE(sleepsOf("quiverly-iio") - pollerSlept, mostWakings);
    EXPECT_LE(sleepsOf("com.jostlix.bon") - readerSlept, mostWakings);
}

TEST_F(PollerTest, WhileNobodyListensThereIsNoThread) {
    EXPECT_EQ(pollingThreads(), 0U);
    ASSERT_TRUE(listener.start());
    ASSERT_TRUE(listener.hears());
    EXPECT_EQ(pollingThreads(), 1U);
    listener.stop();
    EXPECT_TRUE(waitUntil([] { return pollingThreads() == 0; }));
}

TEST_F(PollerTest, ASensorThatAnswersNothingNeitherHoldsUpStopAndStartNorIsBelievedAfterwards) {
    OpenSensor open;
    ASSERT_EQ(open.opened, hid::success);
    ASSERT_TRUE(listener.start());
    ASSERT_TRUE(listener.hears());
    driver().block();
    ASSERT_TRUE(waitUntil([] { return driver().blocked == 2; }));
    const auto silence = std::chrono::steady_clock::now();
    for (int cycle = 0; cycle < 5; ++cycle) {
        listener.stop();
        ASSERT_TRUE(listener.start());
        EXPECT_EQ(driver().blocked, 2) << "the reads have not ended meanwhile";
    }
    EXPECT_EQ(pollingThreads(), 2U) << "the thread that is stuck serves the new listener";
    ASSERT_TRUE(waitUntil([&] { return std::chrono::steady_clock::now() - silence > std::chrono::milliseconds(101); }));
    driver().release();
    ASSERT_TRUE(listener.hears(3));
    for (int slice = 0; slice < 40; ++slice) hid::runLoop(0.01);
    for (const auto& report : open.reports) EXPECT_EQ(report, open.reports.front()) << "the reading that took so long";
}

TEST_F(PollerTest, AThreadThatIsStuckEndsAfterItsListenerHasLeft) {
    ASSERT_TRUE(listener.start());
    driver().block();
    ASSERT_TRUE(waitUntil([] { return driver().blocked == 1; }));
    listener.stop();
    EXPECT_EQ(pollingThreads(), 1U);
    driver().release();
    EXPECT_TRUE(waitUntil([] { return pollingThreads() == 0; }));
}

TEST_F(PollerTest, AFirstReadingThatTakesLongIsAnOpenSensorAllTheSame) {
    driver().block();
    ASSERT_TRUE(listener.start());
    driver().release();
    EXPECT_TRUE(listener.hears());
}

TEST_F(PollerTest, ReadingsGoOnAfterErrors) {
    ASSERT_TRUE(listener.start());
    for (const int error : {EIO, EBUSY, EAGAIN, EINTR, ETIMEDOUT, EINVAL, EREMOTEIO}) {
        ASSERT_TRUE(listener.hears());
        const int reads = driver().reads;
        driver().fail(error);
        ASSERT_TRUE(waitUntil([&] { return driver().reads >= reads + 10; })) << error;
        driver().fail(0);
    }
    EXPECT_TRUE(listener.hears());
}

TEST_F(PollerTest, WhatIsNotALineWithANumberIsDropped) {
    ASSERT_TRUE(listener.start());
    ASSERT_TRUE(listener.hears());
    for (const char* text :
         {"-", "12", "1 2\n", "0x10\n", "\n", "nan\n", "99999999999999999999\n", "1,5\n", "1\n2\n"}) {
        const int reads = driver().reads;
        driver().answer(text);
        ASSERT_TRUE(waitUntil([&] { return driver().reads >= reads + 3; })) << text;
    }
    driver().answer("");
    ASSERT_TRUE(listener.hears());
    for (const auto& sample : listener.samples.all()) EXPECT_NEAR(sample.z, 1023 * gPerStep, 1e-5);
}

TEST_F(PollerTest, AttributesThatAreTruncatedWhileTheyAreReadAreDropped) {
    ASSERT_TRUE(listener.start());
    for (int change = 0; change < 50; ++change) system.set(sensor / "in_accel_z_raw", change % 2 ? "1023" : "1024");
    ASSERT_TRUE(listener.hears(3));
    for (const auto& sample : listener.samples.all()) EXPECT_NEAR(sample.z, 1.0, 0.01);
}

TEST_F(PollerTest, ABusySensorIsSaidToBeAndListenedToOnceItIsFree) {
    driver().fail(EBUSY);
    EXPECT_TRUE(failsToStart("-536870203"));
    driver().fail(0);
    EXPECT_TRUE(listener.start());
    EXPECT_TRUE(listener.hears());
}

TEST_F(PollerTest, ErrorsOfAFirstReadingAreSaid) {
    driver().fail(ENODEV);
    EXPECT_TRUE(failsToStart("-536870208"));
    driver().fail(EIO);
    EXPECT_TRUE(failsToStart("-536870212"));
    driver().fail(EPERM);
    EXPECT_TRUE(failsToStart("-536870174"));
}

TEST_F(PollerTest, ASensorThatIsPulledOutLeavesAQuietReaderThatRecoversWithTheNextOne) {
    ASSERT_TRUE(listener.start());
    ASSERT_TRUE(listener.hears());
    driver().fail(ENODEV);
    ASSERT_TRUE(waitUntil([] { return pollingThreads() == 0; }));
    EXPECT_TRUE(listener.reader.isRunning());
    listener.stop();
    std::filesystem::remove(system.path() / "bus/iio/devices/iio:device0");
    EXPECT_FALSE(listener.start());
    EXPECT_EQ(listener.error(), "Accelerometer device missing on this Mac.");

    driver().fail(0);
    system.addAccelerometer(1);
    EXPECT_TRUE(listener.start());
    EXPECT_TRUE(listener.hears());
}

TEST_F(PollerTest, ASensorThatMayNotBeReadIsNotPermitted) {
    for (const char* axis : {"in_accel_x_raw", "in_accel_y_raw", "in_accel_z_raw"}) {
        ::chmod((sensor / axis).c_str(), 0);
    }
    another_user::give(system.path());
    another_user::act([&] {
        EXPECT_FALSE(listener.start());
        EXPECT_EQ(listener.error(),
                  "Need Input Monitoring permission (System Settings → Privacy & Security). Code -536870174.");
    });
}

TEST_F(PollerTest, ASensorThatIsOfNoUseIsMissing) {
    system.set(sensor / "sampling_frequency", "1");
    EXPECT_FALSE(listener.start());
    EXPECT_EQ(listener.error(), "Accelerometer device missing on this Mac.");
}

TEST_F(PollerTest, ASlowSensorIsNotOfferedAnyMoreOnceItHasBeenMoved) {
    ASSERT_TRUE(listener.start());
    for (int move = 0; move < 20; ++move) { // every 50 ms or less often, as the samples tell the time
        system.set(sensor / "in_accel_z_raw", move % 2 ? "1023" : "1200");
        ASSERT_TRUE(listener.hears(7));
    }
    listener.stop();
    EXPECT_FALSE(listener.start());
    EXPECT_EQ(listener.error(), "Accelerometer device missing on this Mac.");
    const auto slow = system.found().front();
    EXPECT_NE(slow.refusal.value().because.find("different readings a second"), std::string::npos);
    MeasuredRates::ofThisProgram()->remember(slow.identity, 125); // for sensors of other tests in the same place
}

TEST_F(PollerTest, TheSimulatedLaptopGoesFirst) {
    system.set(sensor / "in_accel_z_raw", "-2046");
    const LiveLaptop laptop;
    ASSERT_TRUE(listener.starts());
    ASSERT_TRUE(listener.hears());
    EXPECT_NEAR(listener.samples.last().z, 1.0, 0.01);
}

TEST_F(PollerTest, SeveralReadersHearTheSameSensor) {
    std::list<Listener> listeners(3);
    for (Listener& each : listeners) ASSERT_TRUE(each.start());
    for (const Listener& each : listeners) EXPECT_TRUE(each.hears(5));
    listeners.pop_front();
    for (const Listener& each : listeners) EXPECT_TRUE(each.hears(5));
}

TEST_F(PollerTest, QuickStartsAndStopsLeaveNoThreadAndNoDescriptor) {
    const auto before = ProcessResources::now();
    for (int cycle = 0; cycle < 100; ++cycle) {
        ASSERT_TRUE(listener.start()) << "in cycle " << cycle;
        if (cycle % 10 == 0) {
            ASSERT_TRUE(listener.hears());
        }
        listener.stop();
    }
    EXPECT_TRUE(waitUntil([&] { return ProcessResources::now() == before; }));
}

TEST_F(PollerTest, AReaderThatDoesNotReadLosesReadingsAndStopsNothing) {
    const OpenSensor idle; // its run loop is never run
    ASSERT_EQ(idle.opened, hid::success);
    ASSERT_TRUE(listener.start());
    EXPECT_TRUE(listener.hears(400)); // more than a queue holds
}

} // namespace
} // namespace quiverly
