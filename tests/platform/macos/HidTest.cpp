#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/virtual/VirtualPlatform.h"
#include "platform/virtual/sensor_report.h"
#include "sensing/AccelerometerReader.h"
#include "support/apple/AppleFrameworks.h"

namespace quiverly {
namespace {

constexpr char deviceClass[] = "AppleSPUHIDDevice";

// The macOS implementation of hid.h. What was lent and not given back, and every call that breaks Apple's rules, ends
// the test with a message.
class HidTest : public testing::Test {
protected:
    VirtualPlatform platform;
    AppleFrameworks apple;

    // What integerProperty() makes of a service's only property.
    std::optional<std::int64_t> integerOf(VirtualService::Properties::mapped_type value) {
        platform.registry.services = {{.className = deviceClass, .properties = {{{"key", std::move(value)}}}}};
        const auto service = firstService();
        const auto properties = hid::readProperties(*service);
        EXPECT_NE(properties, nullptr);
        return hid::integerProperty(*properties, "key");
    }

    static hid::Handle<hid::Service> firstService() {
        const auto services = hid::findServices(hid::matchingClass(deviceClass));
        EXPECT_NE(services, nullptr);
        return hid::nextService(*services);
    }
};

TEST_F(HidTest, AnUnusedQueryIsReleased) {
    EXPECT_NE(hid::matchingClass(deviceClass), nullptr);
    EXPECT_EQ(platform.registry.lentObjects(), 0);
}

TEST_F(HidTest, ALookupUsesTheQueryUpWhetherItSucceedsOrFails) {
    auto matching = hid::matchingClass(deviceClass);
    EXPECT_NE(hid::findServices(std::move(matching)), nullptr);
    EXPECT_EQ(platform.registry.lentObjects(), 0);

    platform.registry.unsearchable = {deviceClass};
    matching = hid::matchingClass(deviceClass);
    EXPECT_EQ(hid::findServices(std::move(matching)), nullptr);
    EXPECT_EQ(platform.registry.lentObjects(), 0);
}

TEST_F(HidTest, AWalkThatAFailedLookupGaveOutIsGivenBack) {
    platform.registry.unsearchable = {deviceClass};
    apple.failedLookupHasIterator = true;
    EXPECT_EQ(hid::findServices(hid::matchingClass(deviceClass)), nullptr);
    EXPECT_EQ(platform.registry.lentObjects(), 0);
}

TEST_F(HidTest, FindingNothingIsAWalkWithoutServices) {
    for (const bool withoutIterator : {false, true}) {
        apple.emptyLookupHasNoIterator = withoutIterator;
        const auto services = hid::findServices(hid::matchingClass(deviceClass));
        ASSERT_NE(services, nullptr);
        EXPECT_EQ(hid::nextService(*services), nullptr);
    }
}

TEST_F(HidTest, AWalkMeetsTheServicesInOrderAndEnds) {
    platform.registry.services = {VirtualService::device(1, 2), VirtualService::driver(), VirtualService::device(3, 4)};
    const auto services = hid::findServices(hid::matchingClass(deviceClass));
    for (const std::int64_t usagePage : {1, 3}) {
        const auto service = hid::nextService(*services);
        ASSERT_NE(service, nullptr);
        EXPECT_EQ(hid::integerProperty(*hid::readProperties(*service), "PrimaryUsagePage"), usagePage);
    }
    EXPECT_EQ(hid::nextService(*services), nullptr);
}

TEST_F(HidTest, IntegersAreReadWithAllTheirBits) {
    EXPECT_EQ(integerOf(std::int64_t{0xFF00}), 0xFF00);
    EXPECT_EQ(integerOf(std::int64_t{-1}), -1);
    EXPECT_EQ(integerOf(std::int64_t{0x7FFF'FFFF'FFFF'FFFF}), 0x7FFF'FFFF'FFFF'FFFF);
}

TEST_F(HidTest, APropertyThatIsNotAnIntegerIsNone) {
    EXPECT_EQ(integerOf("3"), std::nullopt);
    EXPECT_EQ(integerOf(true), std::nullopt);
    EXPECT_EQ(integerOf(3.0), std::nullopt);
    EXPECT_EQ(integerOf(3.5), std::nullopt);
}

TEST_F(HidTest, AMissingPropertyIsNone) {
    platform.registry.services = {VirtualService::accelerometer()};
    const auto properties = hid::readProperties(*firstService());
    EXPECT_EQ(hid::integerProperty(*properties, "SecondaryUsage"), std::nullopt);
    apple.noStrings = true;
    EXPECT_EQ(hid::integerProperty(*properties, "PrimaryUsage"), std::nullopt);
}

TEST_F(HidTest, PropertiesThatCannotBeReadAreNone) {
    platform.registry.services = {{.className = deviceClass, .properties = std::nullopt}};
    EXPECT_EQ(hid::readProperties(*firstService()), nullptr);
}

TEST_F(HidTest, PropertiesThatComeWithAnErrorCodeAreTakenAllTheSame) {
    platform.registry.services = {VirtualService::accelerometer()};
    apple.propertiesComeWithAnError = true;
    EXPECT_NE(hid::readProperties(*firstService()), nullptr);
}

TEST_F(HidTest, APropertyThatCannotBeBuiltIsNotWritten) {
    platform.registry.services = {VirtualService::device(1, 2)};
    int written = 0; // outlives the service, whose release is a call too
    const auto service = firstService();
    platform.registry.onCall = [&](const std::string& call) { written += call == "set 0 ReportInterval 1000"; };
    apple.noNumbers = true;
    hid::setProperty(*service, "ReportInterval", 1000);
    apple.noNumbers = false;
    apple.noStrings = true;
    hid::setProperty(*service, "ReportInterval", 1000);
    EXPECT_EQ(written, 0);
    apple.noStrings = false;
    hid::setProperty(*service, "ReportInterval", 1000);
    EXPECT_EQ(written, 1);
}

TEST_F(HidTest, ADeviceOutlivesTheServiceItWasMadeOf) {
    platform.registry.services = {VirtualService::accelerometer()};
    const auto device = hid::createDevice(*firstService());
    ASSERT_NE(device, nullptr);
    EXPECT_EQ(hid::open(*device), hid::success);
    hid::close(*device);
    EXPECT_EQ(platform.registry.lentObjects(), 1);
}

TEST_F(HidTest, AReportReachesTheCallbackWithBufferAndContext) {
    platform.registry.services = {VirtualService::accelerometer()};
    const auto device = hid::createDevice(*firstService());
    ASSERT_EQ(hid::open(*device), hid::success);

    struct Receiver {
        std::vector<std::uint8_t> buffer = std::vector<std::uint8_t>(20);
        std::vector<std::uint8_t> received;
    } receiver;
    const hid::InputReportCallback callback = [](void* context, hid::ReturnCode result, void*, std::uint32_t type,
                                                 std::uint32_t reportID, std::uint8_t* bytes, std::ptrdiff_t length) {
        auto& self = *static_cast<Receiver*>(context);
        EXPECT_EQ(bytes, self.buffer.data());
        EXPECT_EQ(result, hid::success);
        EXPECT_EQ(type, 0U);
        EXPECT_EQ(reportID, 5U);
        self.received.assign(bytes, bytes + length);
    };
    hid::registerInputReportCallback(*device, receiver.buffer.data(), 20, callback, &receiver);
    const ThreadHandle thread = startThread("sensor", 524288,
                                            {.begin = [&] { hid::schedule(*device); },
                                             .turn =
                                                 [&] {
                                                     if (!receiver.received.empty()) return false;
                                                     hid::runLoop(0.25);
                                                     return true;
                                                 },
                                             .end =
                                                 [&] {
                                                     hid::unschedule(*device);
                                                     hid::close(*device);
                                                 }});
    const auto sent = sensorReport(0.1, -0.2, 1.0, 30);
    EXPECT_TRUE(platform.registry.deliver(sent));
    EXPECT_EQ(receiver.received, std::vector(sent.begin(), sent.begin() + 20));
}

TEST_F(HidTest, TheSensorThreadWaitsInTheDefaultModeUntilAReportCameOrAQuarterOfASecondIsOver) {
    platform.registry.services = {VirtualService::driver(), VirtualService::accelerometer()};
    AccelerometerReader reader;
    ASSERT_TRUE(reader.start());
    EXPECT_TRUE(platform.registry.deliver(sensorReport(0, 0, 1.0)));
    EXPECT_EQ(apple.lastRun(), (RunLoopRun{"kCFRunLoopDefaultMode", 0.25, true}));
}

TEST_F(HidTest, AReportAfterUnschedulingIsDropped) {
    platform.registry.connectAccelerometer();
    int samples = 0;
    AccelerometerReader reader;
    reader.onSample = [&](double, double, double) { ++samples; };
    ASSERT_TRUE(reader.start());
    EXPECT_TRUE(platform.registry.deliver(sensorReport(0, 0, 1.0)));
    apple.delayedReport = sensorReport(0, 0, 1.0);
    reader.stop();
    platform.threads.turn();
    EXPECT_FALSE(platform.registry.deviceIsOpen());

    ASSERT_TRUE(reader.start());
    for (int number = 2; number <= 7; ++number) EXPECT_TRUE(platform.registry.deliver(sensorReport(0, 0, 1.0)));
    EXPECT_EQ(samples, 0);
    EXPECT_TRUE(platform.registry.deliver(sensorReport(0, 0, 1.0))); // the eighth that counts
    EXPECT_EQ(samples, 1);
}

TEST_F(HidTest, PermissionRefusedAtFirstAndGrantedLaterLetsTheReaderStart) {
    platform.registry.connectAccelerometer();
    platform.registry.services[1].openResult = hid::notPermitted;
    AccelerometerReader reader;
    EXPECT_FALSE(reader.start());
    EXPECT_EQ(reader.lastOpenError(),
              "Need Input Monitoring permission (System Settings → Privacy & Security). Code -536870174.");
    EXPECT_EQ(platform.registry.lentObjects(), 0);

    platform.registry.services[1].openResult = hid::success;
    EXPECT_TRUE(reader.start());
    EXPECT_EQ(reader.lastOpenError(), std::nullopt);
    EXPECT_TRUE(platform.registry.deliver(sensorReport(0, 0, 1.0)));
    EXPECT_EQ(platform.registry.lentObjects(), 1); // the device
}

TEST_F(HidTest, ADeviceThatGoesAwayWhileListeningIsClosedAllTheSame) {
    platform.registry.connectAccelerometer();
    platform.threads.real = true;
    AccelerometerReader reader;
    ASSERT_TRUE(reader.start());
    EXPECT_TRUE(platform.registry.deliver(sensorReport(0, 0, 1.0)));
    apple.deviceIsGone = true;
    EXPECT_TRUE(reader.isRunning());
    reader.stop();
    EXPECT_TRUE(reader.start());
    EXPECT_EQ(platform.registry.lentObjects(), 1); // the device of the second period
}

TEST_F(HidTest, PeriodsThatFollowEachOtherAtOnceShareNothing) {
    platform.registry.connectAccelerometer();
    platform.threads.real = true;
    AccelerometerReader reader;
    for (int period = 0; period < 3; ++period) {
        ASSERT_TRUE(reader.start());
        EXPECT_TRUE(platform.registry.deliver(sensorReport(0, 0, 1.0)));
        EXPECT_EQ(platform.registry.lentObjects(), 1);
        reader.stop();
    }
    EXPECT_EQ(platform.registry.reportsDelivered(), 3);
}

} // namespace
} // namespace quiverly
