#include "tools/simulate/LaptopRegistry.h"

#include <gtest/gtest.h>

namespace quiverly {
namespace {

constexpr const char* keys[] = {"SensorPropertyReportingState", "SensorPropertyPowerState", "ReportInterval"};

// The driver of an accelerometer that has not been opened yet.
class LaptopRegistryTest : public testing::Test {
protected:
    bool write(const char* key, std::int32_t value) {
        return registry.write(LaptopRegistry::driver, key, value).has_value();
    }

    void wake() {
        for (const char* key : keys) EXPECT_TRUE(write(key, 1000));
    }

    LaptopRegistry registry;
};

TEST_F(LaptopRegistryTest, ReportsOnceAllThreePropertiesAreWritten) {
    registry.accelerometerOpened();
    for (const char* key : keys) {
        EXPECT_FALSE(registry.isReporting());
        write(key, 1);
    }
    EXPECT_TRUE(registry.isReporting());
}

TEST_F(LaptopRegistryTest, ForgetsPropertiesWrittenWhileTheAccelerometerIsClosed) {
    wake();
    registry.accelerometerOpened();
    EXPECT_FALSE(registry.isReporting());
    wake();
    EXPECT_TRUE(registry.isReporting());
}

TEST_F(LaptopRegistryTest, StaysAwakeUntilTheLastOneClosesTheAccelerometer) {
    registry.accelerometerOpened();
    wake();
    registry.accelerometerOpened();
    registry.accelerometerClosed();
    EXPECT_TRUE(registry.isReporting());
    registry.accelerometerClosed();
    EXPECT_FALSE(registry.isReporting());
    registry.accelerometerOpened();
    EXPECT_FALSE(registry.isReporting());
}

TEST_F(LaptopRegistryTest, AnyPropertyOfZeroOrLessKeepsItSilent) {
    registry.accelerometerOpened();
    for (const char* key : keys) {
        wake();
        write(key, 0);
        EXPECT_FALSE(registry.isReporting()) << key;
        write(key, -1);
        EXPECT_FALSE(registry.isReporting()) << key;
        write(key, 1);
        EXPECT_TRUE(registry.isReporting()) << key;
    }
}

TEST_F(LaptopRegistryTest, PropertiesOfOtherServicesWakeNothing) {
    registry.accelerometerOpened();
    for (std::uint8_t service = 0; service < LaptopRegistry::services().size(); ++service) {
        if (service == LaptopRegistry::driver) continue;
        for (const char* key : keys) EXPECT_TRUE(registry.write(service, key, 1));
    }
    EXPECT_FALSE(registry.isReporting());
}

TEST_F(LaptopRegistryTest, RefusesAPropertyThatTheDriverDoesNotHave) {
    registry.accelerometerOpened();
    const auto written = registry.write(LaptopRegistry::driver, "Temperature", 1);
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error(), std::errc::not_supported);
}

TEST_F(LaptopRegistryTest, RefusesAServiceThatDoesNotExist) {
    const auto past = static_cast<std::uint8_t>(LaptopRegistry::services().size());
    const auto written = registry.write(past, "ReportInterval", 1);
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error(), std::errc::no_such_device);
}

} // namespace
} // namespace quiverly
