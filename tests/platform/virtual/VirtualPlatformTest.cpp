#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "platform/audio.h"
#include "platform/random.h"
#include "platform/virtual/VirtualPlatform.h"
#include "platform/virtual/sensor_report.h"
#include "sensing/AccelerometerReader.h"

namespace quiverly {
namespace {

// A laptop that would let a broken rule pass would let every test above it pass, too.
class VirtualPlatformDeathTest : public testing::Test {
protected:
    VirtualPlatformDeathTest() {
        testing::GTEST_FLAG(death_test_style) = "threadsafe"; // forking beside threads hangs under the thread sanitizer
        platform.emplace().registry.services = {VirtualService::accelerometer()};
    }

    static hid::Handle<hid::Device> createDevice() {
        const auto services = hid::findServices(hid::matchingClass("AppleSPUHIDDevice"));
        return hid::createDevice(*hid::nextService(*services));
    }

    static hid::Handle<hid::Device> openDevice() {
        auto device = createDevice();
        EXPECT_EQ(hid::open(*device), hid::success);
        return device;
    }

    std::optional<VirtualPlatform> platform;
};

TEST_F(VirtualPlatformDeathTest, ADeviceReleasedWhileOpenIsAFault) {
    EXPECT_DEATH(openDevice().reset(), "a device was released while it was open");
}

TEST_F(VirtualPlatformDeathTest, ADeviceOpenedTwiceIsAFault) {
    EXPECT_DEATH(hid::open(*openDevice()), "a device was opened twice");
}

TEST_F(VirtualPlatformDeathTest, ADeviceClosedTwiceIsAFault) {
    EXPECT_DEATH(
        {
            const auto device = openDevice();
            hid::close(*device);
            hid::close(*device);
        },
        "a device was closed that was not open");
}

TEST_F(VirtualPlatformDeathTest, ADeviceClosedWhileScheduledIsAFault) {
    EXPECT_DEATH(
        {
            const auto device = openDevice();
            hid::schedule(*device);
            hid::close(*device);
        },
        "a device was closed while it was scheduled");
}

TEST_F(VirtualPlatformDeathTest, ADeviceScheduledClosedOrTwiceIsAFault) {
    EXPECT_DEATH(hid::schedule(*createDevice()), "a device was scheduled closed, or twice");
    EXPECT_DEATH(
        {
            const auto device = openDevice();
            hid::schedule(*device);
            hid::schedule(*device);
        },
        "a device was scheduled closed, or twice");
}

TEST_F(VirtualPlatformDeathTest, ADeviceUnscheduledOnAnotherThreadIsAFault) {
    EXPECT_DEATH(
        {
            const auto device = openDevice();
            const auto thread = startThread(
                "test", 65536, {.begin = [&] { hid::schedule(*device); }, .turn = [] { return true; }, .end = [] {}});
            platform->threads.turn();
            hid::unschedule(*device);
        },
        "a device was unscheduled on another thread than scheduled");
}

TEST_F(VirtualPlatformDeathTest, AThreadThatIsNotWaitedForIsAFault) {
    const ThreadLoop loop{.begin = [] {}, .turn = [] { return false; }, .end = [] {}};
    EXPECT_DEATH(
        {
            const auto thread = startThread("test", 65536, loop);
            platform.reset();
        },
        "a thread was not waited for");
}

TEST_F(VirtualPlatformDeathTest, ALoopThatDoesNotEndWhenItIsWaitedForIsAFault) {
    const ThreadLoop loop{.begin = [] {}, .turn = [] { return true; }, .end = [] {}};
    EXPECT_DEATH(startThread("test", 65536, loop).reset(), "a loop was told to end and did not");
}

TEST_F(VirtualPlatformDeathTest, AHandleThatIsNotReleasedIsAFault) {
    constexpr char message[] = "a service, device or walk was not released";
    EXPECT_DEATH(
        {
            const auto device = createDevice();
            platform.reset();
        },
        message);
    EXPECT_DEATH(
        {
            const auto services = hid::findServices(hid::matchingClass("AppleSPUHIDDevice"));
            platform.reset();
        },
        message);
    EXPECT_DEATH(
        {
            const auto matching = hid::matchingClass("AppleSPUHIDDevice");
            platform.reset();
        },
        message);
}

TEST_F(VirtualPlatformDeathTest, AnAudioPlayerThatIsNotReleasedIsAFault) {
    EXPECT_DEATH(
        {
            const auto player = audio::create("clip.mp3");
            platform.reset();
        },
        "an audio player was not released");
}

TEST_F(VirtualPlatformDeathTest, TwoPlatformsAtOnceAreAFault) {
    EXPECT_DEATH(VirtualPlatform(), "two of them at once");
}

TEST_F(VirtualPlatformDeathTest, APortCalledWithoutAPlatformIsAFault) {
    platform.reset();
    EXPECT_DEATH(calendar::now(), "a port was called while there is none");
}

TEST(VirtualRegistryTest, AReportIsDeliveredOnlyWhileADeviceIsOpenAndItsThreadListens) {
    VirtualPlatform platform;
    platform.registry.connectAccelerometer();
    AccelerometerReader reader;
    EXPECT_FALSE(platform.registry.deliver(sensorReport(0, 0, 1)));
    ASSERT_TRUE(reader.start());
    EXPECT_TRUE(platform.registry.deliver(sensorReport(0, 0, 1)));
    reader.stop(); // the device is still open
    EXPECT_FALSE(platform.registry.deliver(sensorReport(0, 0, 1)));
    EXPECT_EQ(platform.registry.reportsDelivered(), 1);
}

TEST(VirtualRandomTest, TheSameSeedMakesTheSameChoices) {
    const auto choices = [](std::uint64_t seed) {
        VirtualPlatform platform;
        platform.random.generator.seed(seed);
        std::vector<std::size_t> made;
        made.reserve(100);
        for (int count = 0; count < 100; ++count) made.push_back(random::uniformIndex(30));
        return made;
    };
    EXPECT_EQ(choices(1), choices(1));
    EXPECT_NE(choices(1), choices(2));
    for (const std::size_t choice : choices(3)) EXPECT_LT(choice, 30U);
}

} // namespace
} // namespace quiverly
