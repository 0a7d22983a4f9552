#include "platform/linux/sensors/iio/Accelerometer.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>
#include <filesystem>
#include <locale>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/sensors/iio/MeasuredRates.h"
#include "support/AnotherUser.h"
#include "support/FakeSystem.h"

namespace quiverly {
namespace {

using Kind = Accelerometer::Refusal::Kind;

class AccelerometerTest : public testing::Test {
protected:
    Accelerometer only() const {
        auto found = system.found();
        EXPECT_EQ(found.size(), 1U);
        return found.empty() ? Accelerometer{} : found.front();
    }

    // Nothing for one that is of use.
    std::optional<Kind> refusal() const {
        const auto found = only();
        return found.refusal ? std::optional(found.refusal->kind) : std::nullopt;
    }

    std::string reason() const {
        const auto found = only();
        return found.refusal ? found.refusal->because : "";
    }

    std::vector<std::string> order() const {
        std::vector<std::string> names;
        for (const auto& accelerometer : system.found()) names.push_back(accelerometer.folder.filename());
        return names;
    }

    FakeSystem system;
};

TEST_F(AccelerometerTest, ASystemWithoutIndustrialIoHasNone) {
    EXPECT_TRUE(system.found().empty());
    system.addFolder("bus/iio/devices");
    EXPECT_TRUE(system.found().empty());
}

TEST_F(AccelerometerTest, IsDescribedByItsAttributes) {
    const auto folder = system.addAccelerometer();
    system.set(folder / "in_accel_offset", "-16");
    system.set(folder / "label", "accel-base");
    system.set(folder / "in_accel_sampling_frequency", "50.000000");
    const auto found = only();
    EXPECT_FALSE(found.refusal);
    EXPECT_EQ(found.name, "kxcj9");
    EXPECT_EQ(found.driver, "kxcjk1013");
    EXPECT_EQ(found.place, "accel-base");
    EXPECT_EQ(found.statedRate, 50.0);
    EXPECT_EQ(found.scale, (std::array{0.009582, 0.009582, 0.009582}));
    EXPECT_EQ(found.offset, (std::array{-16.0, -16.0, -16.0}));
    EXPECT_EQ(found.rawFile(2).filename(), "in_accel_z_raw");
}

TEST_F(AccelerometerTest, MayHaveAScaleAndAnOffsetForEachAxis) {
    const auto folder = system.addAccelerometer();
    std::filesystem::remove(folder / "in_accel_scale");
    system.set(folder / "in_accel_x_scale", "0.01");
    system.set(folder / "in_accel_y_scale", "0.02");
    system.set(folder / "in_accel_z_scale", "0.03");
    system.set(folder / "in_accel_y_offset", "7");
    const auto found = only();
    EXPECT_FALSE(found.refusal);
    EXPECT_EQ(found.scale, (std::array{0.01, 0.02, 0.03}));
    EXPECT_EQ(found.offset, (std::array{0.0, 7.0, 0.0}));
}

TEST_F(AccelerometerTest, IsRefusedWithoutAnyOfItsAxes) {
    for (const char* axis : {"in_accel_x_raw", "in_accel_y_raw", "in_accel_z_raw"}) {
        const auto folder = system.addAccelerometer();
        std::filesystem::remove(folder / axis);
        EXPECT_EQ(refusal(), Kind::incomplete) << axis;
        std::filesystem::remove_all(system.path() / "bus");
        std::filesystem::remove_all(system.path() / "devices");
    }
}

TEST_F(AccelerometerTest, IsRefusedWithoutAScaleThatIsANumber) {
    const auto folder = system.addAccelerometer();
    for (const std::string& scale : {std::string(), std::string("abc"), std::string("0"), std::string("0,009582"),
                                     std::string("nan"), std::string("inf"), std::string("1e-2"), std::string("0.01 m"),
                                     std::string("0.01\0", 5), std::string(" 0.01")}) {
        system.set(folder / "in_accel_scale", scale);
        EXPECT_EQ(refusal(), Kind::incomplete) << scale;
    }
    system.set(folder / "in_accel_scale", "1" + std::string(400, '0'));
    EXPECT_EQ(refusal(), Kind::tooCoarse);
    std::filesystem::remove(folder / "in_accel_scale");
    EXPECT_EQ(refusal(), Kind::incomplete);
    EXPECT_EQ(reason(), "does not tell its scale");
    system.addFolder("devices/i2c/1-000f/iio:device0/in_accel_scale"); // reading it fails
    EXPECT_EQ(refusal(), Kind::incomplete);
}

TEST_F(AccelerometerTest, IsRefusedWithAnOffsetThatIsNotANumber) {
    const auto folder = system.addAccelerometer();
    system.set(folder / "in_accel_offset", "none");
    EXPECT_EQ(refusal(), Kind::incomplete);
    EXPECT_EQ(reason(), "does not tell its offset");
}

TEST_F(AccelerometerTest, ItsNumbersAreThoseOfTheCLocaleWhateverTheUsersIs) {
    struct Comma : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
    };
    const std::locale former = std::locale::global(std::locale(std::locale(), new Comma));
    system.addAccelerometer();
    EXPECT_EQ(only().scale[0], 0.009582);
    std::locale::global(former);
}

TEST_F(AccelerometerTest, NeedsNeitherNameNorDriver) {
    const auto folder = system.addAccelerometer();
    std::filesystem::remove(folder / "name");
    std::filesystem::remove(folder.parent_path() / "driver");
    EXPECT_FALSE(refusal());
    EXPECT_EQ(only().name, "");
    EXPECT_EQ(only().driver, "");
}

TEST_F(AccelerometerTest, ANameOfAnyLengthIsCut) {
    const auto folder = system.addAccelerometer();
    system.set(folder / "name", std::string(100'000, 'n'));
    EXPECT_EQ(only().name, std::string(255, 'n'));
}

TEST_F(AccelerometerTest, AnAttributeThatIsAPipeWithoutAWriterIsNotWaitedFor) {
    const auto folder = system.addAccelerometer();
    for (const char* attribute : {"label", "in_accel_offset", "in_accel_sampling_frequency"}) {
        ASSERT_EQ(::mkfifo((folder / attribute).c_str(), 0600), 0);
    }
    EXPECT_EQ(refusal(), Kind::incomplete);
}

TEST_F(AccelerometerTest, DriversThatPowerItUpForEachValueAreTooSlow) {
    for (const char* driver : {"st-accel-i2c", "st-accel-spi", "st_lsm6dsx_i2c", "st_lsm6dsx_spi"}) {
        system.addAccelerometer(0, driver);
        EXPECT_EQ(refusal(), Kind::tooSlow) << driver;
        std::filesystem::remove_all(system.path() / "bus");
        std::filesystem::remove_all(system.path() / "devices");
    }
}

TEST_F(AccelerometerTest, ASensorHubOfAmdIsTooSlowAndThoseOfOthersAreNot) {
    const auto folder =
        system.addAccelerometer(0, "hid_sensor_accel_3d", "0020:1022:0001.0001/HID-SENSOR-200073.1.auto");
    EXPECT_EQ(refusal(), Kind::tooSlow);
    EXPECT_EQ(reason(), "gives new values only 5 times a second");
    std::filesystem::remove(system.path() / "bus/iio/devices/iio:device0");
    system.addAccelerometer(1, "hid_sensor_accel_3d", "0018:8087:0AC2.0001/HID-SENSOR-200073.1.auto");
    EXPECT_FALSE(refusal());
}

TEST_F(AccelerometerTest, TheRateItIsSetToDecidesFrom40On) {
    const auto folder = system.addAccelerometer();
    for (const char* attribute : {"in_accel_sampling_frequency", "sampling_frequency"}) {
        for (const char* slow : {"1", "0.781000", "12.500000", "39.999"}) {
            system.set(folder / attribute, slow);
            EXPECT_EQ(refusal(), Kind::tooSlow) << slow;
        }
        for (const char* fast : {"40", "50.000000", "1600", "0", "-1", "", "fast"}) { // the last ones say nothing
            system.set(folder / attribute, fast);
            EXPECT_FALSE(refusal()) << fast;
        }
    }
    system.set(folder / "sampling_frequency", "10");
    EXPECT_EQ(reason(), "is set to 10 readings a second");
}

TEST_F(AccelerometerTest, TheRateThatASensorHubIsSetToSaysNothing) {
    const auto folder = system.addAccelerometer(0, "hid_sensor_accel_3d");
    system.set(folder / "in_accel_sampling_frequency", "10.000000");
    EXPECT_FALSE(refusal());
    EXPECT_FALSE(only().statedRate);
}

TEST_F(AccelerometerTest, IsTooSlowOnceItHasBeenMeasuredSo) {
    system.addAccelerometer();
    const auto rates = MeasuredRates::ofThisProgram();
    rates->remember(only().identity, 39.4);
    EXPECT_EQ(refusal(), Kind::tooSlow);
    EXPECT_EQ(reason(), "gave only 39 different readings a second while it was moved");
    rates->remember(only().identity, 40.0);
    EXPECT_FALSE(refusal());
}

TEST_F(AccelerometerTest, IsTooCoarseWhenItsStepIsMoreThanTheSoftestSlap) {
    const auto folder = system.addAccelerometer();
    system.set(folder / "in_accel_scale", "0.461");
    EXPECT_EQ(refusal(), Kind::tooCoarse);
    EXPECT_EQ(reason(), "measures in steps of 0.047 g, which is more than a soft slap");
    system.set(folder / "in_accel_scale", "-0.461");
    EXPECT_EQ(refusal(), Kind::tooCoarse);
    system.set(folder / "in_accel_scale", "0.392");
    EXPECT_FALSE(refusal());
    system.set(folder / "in_accel_z_scale", "0.393");
    EXPECT_EQ(refusal(), Kind::tooCoarse);
}

TEST_F(AccelerometerTest, OneThatMayNotBeReadIsSaidToBe) {
    const auto folder = system.addAccelerometer();
    ::chmod((folder / "in_accel_y_raw").c_str(), 0);
    another_user::give(system.path());
    another_user::act([&] {
        EXPECT_EQ(refusal(), Kind::notPermitted);
        EXPECT_EQ(reason(), "may not be read by this user");
    });
}

TEST_F(AccelerometerTest, TheyComeInTheOrderOfTheirNumbers) {
    for (const int number : {10, 2, 1}) system.addAccelerometer(number);
    EXPECT_EQ(order(), (std::vector<std::string>{"iio:device1", "iio:device2", "iio:device10"}));
}

TEST_F(AccelerometerTest, TheOneInTheBaseComesFirstAndTheOneInTheLidLast) {
    system.set(system.addAccelerometer(0) / "label", "accel-display");
    system.addAccelerometer(1);
    system.set(system.addAccelerometer(2) / "label", "accel-base");
    EXPECT_EQ(order(), (std::vector<std::string>{"iio:device2", "iio:device1", "iio:device0"}));
}

TEST_F(AccelerometerTest, OlderDriversSayTheirPlaceElsewhere) {
    system.set(system.addAccelerometer(0) / "location", "lid");
    system.set(system.addAccelerometer(1) / "location", "base");
    EXPECT_EQ(order(), (std::vector<std::string>{"iio:device1", "iio:device0"}));
}

TEST_F(AccelerometerTest, ThoseOfUseComeBeforeThoseThatAreNot) {
    const auto slow = system.addAccelerometer(0);
    system.set(slow / "label", "accel-base");
    system.set(slow / "sampling_frequency", "1");
    system.set(system.addAccelerometer(1) / "label", "accel-display");
    EXPECT_EQ(order(), (std::vector<std::string>{"iio:device1", "iio:device0"}));
}

TEST_F(AccelerometerTest, OtherSensorsAreNone) {
    const auto gravity = system.addDevice(0, "hid_sensor_accel_3d");
    for (const char* axis : {"x", "y", "z"}) {
        system.set(gravity / (std::string("in_gravity_") + axis + "_raw"), "100");
        system.set(gravity / (std::string("in_anglvel_") + axis + "_raw"), "100");
    }
    system.set(gravity / "in_gravity_scale", "0.01");
    EXPECT_TRUE(system.found().empty());
}

TEST_F(AccelerometerTest, OneThatTakesThePlaceOfAnotherHasAnotherIdentity) {
    const auto folder = system.addAccelerometer();
    const auto former = only().identity;
    EXPECT_EQ(only().identity, former);
    std::filesystem::rename(folder / "in_accel_x_raw", folder / "former"); // keeps its inode in use
    system.set(folder / "in_accel_x_raw", "0");
    EXPECT_NE(only().identity, former);
}

} // namespace
} // namespace quiverly
