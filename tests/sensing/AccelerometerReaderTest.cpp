#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/virtual/VirtualPlatform.h"
#include "platform/virtual/sensor_report.h"
#include "sensing/AccelerometerReader.h"
#include "support/Sample.h"

namespace quiverly {
namespace {

using Calls = std::vector<std::string>;

const Calls writesToDriver0 = {"set 0 SensorPropertyReportingState 1", "set 0 SensorPropertyPowerState 1",
                               "set 0 ReportInterval 1000"};

// A reader on a laptop with one driver (service 0) and the accelerometer (service 1), its thread turned by hand.
class AccelerometerReaderTest : public testing::Test {
protected:
    AccelerometerReaderTest() {
        platform.registry.connectAccelerometer();
        platform.registry.onCall = [this](const std::string& call) { calls.push_back(call); };
        collect(reader, samples);
    }

    // The calls since the last time, those that begin with the prefix.
    Calls takeCalls(const std::string& prefix = "") {
        Calls taken;
        for (const std::string& call : std::exchange(calls, {})) {
            if (call.starts_with(prefix)) taken.push_back(call);
        }
        return taken;
    }

    VirtualService& accelerometer() { return platform.registry.services.at(1); }

    void deliver(int reports) {
        for (int count = 0; count < reports; ++count) ASSERT_TRUE(platform.registry.deliver(sensorReport(0, 0, 1)));
    }

    // Lets the sensor thread notice a stop.
    void letThreadEnd() {
        platform.threads.turn();
        ASSERT_EQ(platform.threads.looping(), 0U);
    }

    void expectIdle() {
        EXPECT_FALSE(reader.isRunning());
        EXPECT_FALSE(platform.registry.deviceIsOpen());
        EXPECT_EQ(platform.registry.lentObjects(), 0);
        EXPECT_EQ(platform.threads.looping(), 0U);
    }

    Calls calls; // outlives the reader, whose end still calls
    VirtualPlatform platform;
    std::vector<Sample> samples;
    AccelerometerReader reader;
};

TEST_F(AccelerometerReaderTest, ConstructionOpensNothing) {
    EXPECT_TRUE(calls.empty());
    EXPECT_EQ(reader.lastOpenError(), std::nullopt);
    expectIdle();
}

TEST_F(AccelerometerReaderTest, ASuccessfulStartCallsTheRegistryInThisOrder) {
    platform.registry.services = {VirtualService::driver(), VirtualService::device(0xFF00, 9), VirtualService::driver(),
                                  VirtualService::accelerometer(), VirtualService::accelerometer()};
    const Calls wake = {
        "matching AppleSPUHIDDriver",
        "find AppleSPUHIDDriver",
        "next 0",
        "set 0 SensorPropertyReportingState 1",
        "set 0 SensorPropertyPowerState 1",
        "set 0 ReportInterval 1000",
        "release 0",
        "next 2",
        "set 2 SensorPropertyReportingState 1",
        "set 2 SensorPropertyPowerState 1",
        "set 2 ReportInterval 1000",
        "release 2",
        "release services",
    };
    Calls expected = wake;
    expected.insert(expected.end(), {
                                        "matching AppleSPUHIDDevice",
                                        "find AppleSPUHIDDevice",
                                        "next 1",
                                        "properties 1",
                                        "release 1",
                                        "next 3",
                                        "properties 3",
                                        "create 3",
                                        "open 3",
                                    });
    expected.insert(expected.end(), wake.begin(), wake.end());
    expected.insert(expected.end(), {"register 3 256", "release 3", "release services"});

    EXPECT_TRUE(reader.start());
    EXPECT_EQ(takeCalls(), expected);
    EXPECT_TRUE(reader.isRunning());

    platform.threads.turn();
    EXPECT_EQ(takeCalls(), (Calls{"schedule 3"}));
}

TEST_F(AccelerometerReaderTest, TheEndingThreadUnschedulesClosesAndReleasesTheDevice) {
    ASSERT_TRUE(reader.start());
    platform.threads.turn();
    calls.clear();

    reader.stop();
    EXPECT_TRUE(calls.empty()); // stop() itself closes nothing
    EXPECT_TRUE(platform.registry.deviceIsOpen());
    EXPECT_FALSE(reader.isRunning());

    letThreadEnd();
    EXPECT_EQ(takeCalls(), (Calls{"unschedule 1", "close 1", "release device 1"}));
    expectIdle();
}

TEST_F(AccelerometerReaderTest, TheThreadHasANameAndAStackOf512KiB) {
    ASSERT_TRUE(reader.start());
    EXPECT_EQ(platform.threads.lastName, "com.jostlix.bonko.accel");
    EXPECT_EQ(platform.threads.lastStackSize, 524288U);
}

TEST_F(AccelerometerReaderTest, TheRunLoopRunsInSlicesOfAQuarterSecond) {
    ASSERT_TRUE(reader.start());
    platform.threads.turn();
    EXPECT_EQ(platform.registry.lastSlice(), 0.25);
}

TEST_F(AccelerometerReaderTest, TheDriverPropertiesAreWrittenTwiceOnEverySuccessfulStart) {
    Calls twice = writesToDriver0;
    twice.insert(twice.end(), writesToDriver0.begin(), writesToDriver0.end());
    for (int round = 0; round < 2; ++round) {
        ASSERT_TRUE(reader.start());
        const Calls made = takeCalls();
        Calls written;
        std::copy_if(made.begin(), made.end(), std::back_inserter(written),
                     [](auto& call) { return call.starts_with("set"); });
        EXPECT_EQ(written, twice);
        const auto lookup = std::find(made.begin(), made.end(), "matching AppleSPUHIDDevice");
        const auto open = std::find(made.begin(), made.end(), "open 1");
        EXPECT_EQ(std::count(made.begin(), lookup, "set 0 ReportInterval 1000"), 1);
        EXPECT_EQ(std::count(open, made.end(), "set 0 ReportInterval 1000"), 1);
        reader.stop();
    }
}

TEST_F(AccelerometerReaderTest, TheDriverPropertiesAreWrittenOnceOnAFailedStart) {
    accelerometer().openResult = hid::notPermitted;
    ASSERT_FALSE(reader.start());
    EXPECT_EQ(takeCalls("set"), writesToDriver0);
}

TEST_F(AccelerometerReaderTest, DriversThatCannotBeFoundAreIgnored) {
    platform.registry.unbuildable = {"AppleSPUHIDDriver"};
    EXPECT_TRUE(reader.start());
    reader.stop();
    platform.registry.unbuildable = {};
    platform.registry.unsearchable = {"AppleSPUHIDDriver"};
    EXPECT_TRUE(reader.start());
    reader.stop();
    platform.registry.unsearchable = {};
    platform.registry.services = {VirtualService::accelerometer()};
    EXPECT_TRUE(reader.start());
    EXPECT_EQ(reader.lastOpenError(), std::nullopt);
    EXPECT_TRUE(takeCalls("set").empty());
}

TEST_F(AccelerometerReaderTest, StartWhileListeningReturnsTrueAndTouchesNeitherMessageNorDeviceNorThread) {
    ASSERT_TRUE(reader.start());
    calls.clear();

    platform.registry.services.clear(); // a lookup would fail now
    EXPECT_TRUE(reader.start());
    EXPECT_TRUE(calls.empty());
    EXPECT_EQ(platform.threads.live(), 1U);
    EXPECT_EQ(reader.lastOpenError(), std::nullopt);
}

TEST_F(AccelerometerReaderTest, AStartAfterAFailedOneFirstClearsTheOldMessageAndASuccessLeavesItAbsent) {
    accelerometer().canBecomeDevice = false;
    ASSERT_FALSE(reader.start());
    ASSERT_NE(reader.lastOpenError(), std::nullopt);

    accelerometer().canBecomeDevice = true;
    int callsMade = 0;
    platform.registry.onCall = [&](const std::string& call) {
        ++callsMade;
        EXPECT_EQ(reader.lastOpenError(), std::nullopt) << call;
    };
    EXPECT_TRUE(reader.start());
    EXPECT_EQ(reader.lastOpenError(), std::nullopt);
    EXPECT_GT(callsMade, 0);
    platform.registry.onCall = nullptr;
}

TEST_F(AccelerometerReaderTest, StopWhileNotListeningDoesNothing) {
    accelerometer().canBecomeDevice = false;
    ASSERT_FALSE(reader.start());
    calls.clear();
    reader.stop();
    EXPECT_TRUE(calls.empty());
    EXPECT_EQ(reader.lastOpenError(), "Failed to create HID device.");
    expectIdle();
}

TEST_F(AccelerometerReaderTest, ASecondStopDoesNothingAndDoesNotWaitForTheThreadEither) {
    ASSERT_TRUE(reader.start());
    platform.threads.turn();
    reader.stop();
    calls.clear();
    reader.stop();
    EXPECT_EQ(calls, Calls{});
    EXPECT_TRUE(platform.registry.deviceIsOpen());
    EXPECT_EQ(platform.threads.looping(), 1U);

    letThreadEnd();
    reader.stop();
    expectIdle();
}

TEST_F(AccelerometerReaderTest, AfterStopAndStartDeviceAndThreadAreNewAndTheCountOfReportsContinues) {
    ASSERT_TRUE(reader.start());
    deliver(5);
    reader.stop();
    calls.clear();

    ASSERT_TRUE(reader.start());
    const Calls made = takeCalls();
    const auto closed = std::find(made.begin(), made.end(), "close 1");
    const auto firstStep = std::find(made.begin(), made.end(), "matching AppleSPUHIDDriver");
    EXPECT_LT(closed, firstStep); // the ending thread is waited for first
    EXPECT_NE(std::find(firstStep, made.end(), "open 1"), made.end());
    EXPECT_EQ(platform.threads.live(), 1U);

    deliver(2);
    EXPECT_TRUE(samples.empty());
    deliver(1); // the eighth since construction
    EXPECT_EQ(samples.size(), 1U);
}

TEST_F(AccelerometerReaderTest, AFailedStartAfterAStopLeavesNothingOpen) {
    ASSERT_TRUE(reader.start());
    reader.stop();
    platform.registry.services.clear();
    EXPECT_FALSE(reader.start());
    expectIdle();
}

TEST_F(AccelerometerReaderTest, AFailedStartLeavesTheCountOfReports) {
    ASSERT_TRUE(reader.start());
    deliver(5);
    reader.stop();
    accelerometer().canBecomeDevice = false;
    ASSERT_FALSE(reader.start());
    accelerometer().canBecomeDevice = true;
    ASSERT_TRUE(reader.start());
    deliver(2);
    EXPECT_TRUE(samples.empty());
    deliver(1); // the eighth since construction
    EXPECT_EQ(samples.size(), 1U);
}

TEST_F(AccelerometerReaderTest, TheFirstMatchingServiceWins) {
    platform.registry.services.push_back(VirtualService::accelerometer());
    ASSERT_TRUE(reader.start());
    EXPECT_EQ(takeCalls("open"), (Calls{"open 1"}));
}

TEST_F(AccelerometerReaderTest, ADriverServiceWithTheAccelerometersUsagesIsNotADevice) {
    accelerometer().className = "AppleSPUHIDDriver";
    EXPECT_FALSE(reader.start());
    EXPECT_EQ(reader.lastOpenError(), "Accelerometer device missing on this Mac.");
}

TEST_F(AccelerometerReaderTest, ReportsArriveOnTheSensorThread) {
    ASSERT_TRUE(reader.start());
    const Thread* thread = nullptr;
    reader.onSample = [&](double, double, double) { thread = VirtualThreads::current(); };
    deliver(8);
    EXPECT_NE(thread, nullptr); // which the main thread's would be, and there is no other
}

TEST_F(AccelerometerReaderTest, NoReportIsDeliveredAfterTheStop) {
    ASSERT_TRUE(reader.start());
    deliver(7);
    reader.stop();
    EXPECT_FALSE(platform.registry.deliver(sensorReport(0, 0, 1)));
    EXPECT_TRUE(samples.empty());

    ASSERT_TRUE(reader.start());
    deliver(1); // the eighth that counts
    EXPECT_EQ(samples.size(), 1U);
}

TEST_F(AccelerometerReaderTest, WithoutAThreadToSpareStartFailsWithoutAMessageAndTheDeviceIsClosed) {
    platform.threads.exhausted = true;
    EXPECT_FALSE(reader.start());
    EXPECT_EQ(reader.lastOpenError(), std::nullopt);
    expectIdle();
    EXPECT_EQ(takeCalls("close"), (Calls{"close 1"}));

    platform.threads.exhausted = false;
    EXPECT_TRUE(reader.start());
}

TEST_F(AccelerometerReaderTest, DestructionWhileListeningClosesTheDevice) {
    {
        AccelerometerReader shortLived;
        ASSERT_TRUE(shortLived.start());
        platform.threads.turn();
        calls.clear();
    }
    EXPECT_EQ(takeCalls(), (Calls{"unschedule 1", "close 1", "release device 1"}));
    expectIdle();
}

TEST_F(AccelerometerReaderTest, DestructionRightAfterAStopClosesTheDevice) {
    {
        AccelerometerReader shortLived;
        ASSERT_TRUE(shortLived.start());
        shortLived.stop();
    }
    expectIdle();
}

// Every way in which a start fails: its message, the last steps taken, and nothing left over.

struct Failure {
    const char* name;
    void (*arrange)(VirtualRegistry& registry);
    const char* message;
    Calls lastCalls;
};

void PrintTo(const Failure& failure, std::ostream* out) {
    *out << failure.name;
}

class AccelerometerReaderFailureTest : public AccelerometerReaderTest, public testing::WithParamInterface<Failure> {};

TEST_P(AccelerometerReaderFailureTest, IsReportedInOneLineAndLeavesNothingOpen) {
    GetParam().arrange(platform.registry);
    EXPECT_FALSE(reader.start());
    EXPECT_EQ(reader.lastOpenError(), GetParam().message);
    expectIdle();
    EXPECT_EQ(platform.threads.live(), 0U);
    EXPECT_EQ(std::ranges::count_if(calls, [](const auto& call) { return call.starts_with("register"); }), 0);
    const Calls& expected = GetParam().lastCalls;
    ASSERT_GE(calls.size(), expected.size());
    EXPECT_EQ(Calls(calls.end() - std::ssize(expected), calls.end()), expected);

    EXPECT_FALSE(reader.start()); // and again the same
    EXPECT_EQ(reader.lastOpenError(), GetParam().message);
    expectIdle();
}

constexpr char missing[] = "Accelerometer device missing on this Mac.";

VirtualService& sensorOf(VirtualRegistry& registry) {
    return registry.services.at(1);
}

const Failure failures[] = {
    {"TheQueryForDevicesCannotBeBuilt",
     [](VirtualRegistry& registry) { registry.unbuildable = {"AppleSPUHIDDevice"}; },
     "Could not query AppleSPUHIDDevice.",
     {"matching AppleSPUHIDDevice"}},
    {"TheLookupFails",
     [](VirtualRegistry& registry) { registry.unsearchable = {"AppleSPUHIDDevice"}; },
     "No Apple Silicon accelerometer found.",
     {"find AppleSPUHIDDevice"}},
    {"AMachineWithoutTheSensor",
     [](VirtualRegistry& registry) { registry.services = {}; },
     missing,
     {"find AppleSPUHIDDevice", "release services"}},
    {"OnlyOtherUsages",
     [](VirtualRegistry& registry) {
         registry.services = {VirtualService::device(0xFF00, 9), VirtualService::device(0xFF00, 5)};
     },
     missing,
     {"find AppleSPUHIDDevice", "next 0", "properties 0", "release 0", "next 1", "properties 1", "release 1",
      "release services"}},
    {"AnotherUsagePage",
     [](VirtualRegistry& registry) { registry.services = {VirtualService::device(0x20, 3)}; },
     missing,
     {"properties 0", "release 0", "release services"}},
    {"ServicesWithoutTheTwoKeys",
     [](VirtualRegistry& registry) { sensorOf(registry).properties = VirtualService::Properties{}; },
     missing,
     {"properties 1", "release 1", "release services"}},
    {"AServiceWithoutUsage",
     [](VirtualRegistry& registry) { sensorOf(registry).properties->erase("PrimaryUsage"); },
     missing,
     {"properties 1", "release 1", "release services"}},
    {"AServiceWithoutUsagePage",
     [](VirtualRegistry& registry) { sensorOf(registry).properties->erase("PrimaryUsagePage"); },
     missing,
     {"properties 1", "release 1", "release services"}},
    {"KeysThatAreNotIntegers",
     [](VirtualRegistry& registry) {
         sensorOf(registry).properties = {{"PrimaryUsagePage", "65280"}, {"PrimaryUsage", "3"}};
     },
     missing,
     {"properties 1", "release 1", "release services"}},
    {"PropertiesThatCannotBeRead",
     [](VirtualRegistry& registry) { sensorOf(registry).properties.reset(); },
     missing,
     {"properties 1", "release 1", "release services"}},
    {"TheDeviceCannotBeCreated",
     [](VirtualRegistry& registry) { sensorOf(registry).canBecomeDevice = false; },
     "Failed to create HID device.",
     {"create 1", "release 1", "release services"}},
    {"OpenNotPermitted",
     [](VirtualRegistry& registry) { sensorOf(registry).openResult = hid::notPermitted; },
     "Need Input Monitoring permission (System Settings → Privacy & Security). Code -536870174.",
     {"open 1", "release device 1", "release 1", "release services"}},
    {"OpenRefusedWithTheLeastCode",
     [](VirtualRegistry& registry) { sensorOf(registry).openResult = std::numeric_limits<std::int32_t>::min(); },
     "Need Input Monitoring permission (System Settings → Privacy & Security). Code -2147483648.",
     {"open 1", "release device 1", "release 1", "release services"}},
    {"OpenRefusedWithAPositiveCode",
     [](VirtualRegistry& registry) { sensorOf(registry).openResult = 1; },
     "Need Input Monitoring permission (System Settings → Privacy & Security). Code 1.",
     {"open 1", "release device 1", "release 1", "release services"}},
};

INSTANTIATE_TEST_SUITE_P(FailedStart, AccelerometerReaderFailureTest, testing::ValuesIn(failures),
                         [](const auto& test) { return std::string(test.param.name); });

} // namespace
} // namespace quiverly
