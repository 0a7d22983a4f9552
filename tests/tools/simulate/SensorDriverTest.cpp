#include <gtest/gtest.h>

#include <cerrno>

#include "tools/simulate/SensorDriver.h"

namespace quiverly {
namespace {

void wake(SensorDriver& driver) {
    EXPECT_EQ(driver.write("SensorPropertyReportingState", 1), 0);
    EXPECT_EQ(driver.write("SensorPropertyPowerState", 1), 0);
    EXPECT_EQ(driver.write("ReportInterval", 1000), 0);
}

TEST(SensorDriverTest, ReportsOnceAllThreePropertiesAreWritten) {
    SensorDriver driver;
    driver.deviceOpened();
    EXPECT_FALSE(driver.isReporting());
    driver.write("SensorPropertyReportingState", 1);
    driver.write("SensorPropertyPowerState", 1);
    EXPECT_FALSE(driver.isReporting());
    driver.write("ReportInterval", 1000);
    EXPECT_TRUE(driver.isReporting());
}

TEST(SensorDriverTest, ForgetsWhatIsWrittenWhileNobodyHasTheSensorOpen) {
    SensorDriver driver;
    wake(driver);
    driver.deviceOpened();
    EXPECT_FALSE(driver.isReporting());
    wake(driver);
    EXPECT_TRUE(driver.isReporting());
}

TEST(SensorDriverTest, StaysAwakeUntilTheLastOneClosesTheSensor) {
    SensorDriver driver;
    driver.deviceOpened();
    wake(driver);
    driver.deviceOpened();
    driver.deviceClosed();
    EXPECT_TRUE(driver.isReporting());
    driver.deviceClosed();
    EXPECT_FALSE(driver.isReporting());
    driver.deviceOpened();
    EXPECT_FALSE(driver.isReporting());
}

TEST(SensorDriverTest, AnyPropertyOfZeroOrLessKeepsItSilent) {
    for (const char* key : {"SensorPropertyReportingState", "SensorPropertyPowerState", "ReportInterval"}) {
        SensorDriver driver;
        driver.deviceOpened();
        wake(driver);
        driver.write(key, 0);
        EXPECT_FALSE(driver.isReporting()) << key;
        driver.write(key, -1);
        EXPECT_FALSE(driver.isReporting()) << key;
        driver.write(key, 1);
        EXPECT_TRUE(driver.isReporting()) << key;
    }
}

TEST(SensorDriverTest, RefusesAPropertyThatItDoesNotHave) {
    SensorDriver driver;
    driver.deviceOpened();
    EXPECT_EQ(driver.write("Temperature", 1), ENOTSUP);
    EXPECT_FALSE(driver.isReporting());
}

} // namespace
} // namespace quiverly
