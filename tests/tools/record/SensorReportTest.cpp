#include "tools/record/SensorReport.h"

#include <gtest/gtest.h>

#include <chrono>
#include <initializer_list>
#include <string>
#include <utility>

#include "support/FakeSystem.h"

namespace quiverly {
namespace {

using testing::Test;
using namespace std::chrono_literals;

class SensorReportTest : public Test {
protected:
    // One that was read 250 times in two seconds.
    static TriedSensor tried() {
        TriedSensor sensor{.sensor = {}, .readings = 250, .different = 240, .seconds = 2.0};
        sensor.sensor.folder = "/sys/bus/iio/devices/iio:device3";
        sensor.sensor.name = "kxcj9";
        sensor.sensor.driver = "kxcjk1013";
        sensor.sensor.place = "accel-base";
        sensor.sensor.scale = {0.00980665, 0.00980665, 0.00980665};
        return sensor;
    }

    const FakeSystem system;
};

TEST_F(SensorReportTest, AMachineWithoutAccelerometerIsToldSo) {
    EXPECT_EQ(asText({}, false), "This machine has no accelerometer that Linux can read.\n");
    EXPECT_NE(asJson({}, true).find(R"("simulated_laptop":true,"sensors":[]})"), std::string::npos);
}

TEST_F(SensorReportTest, ASensorIsDescribedInWords) {
    auto sensor = tried();
    sensor.sensor.statedRate = 50;
    EXPECT_EQ(asText({sensor}, false), "kxcj9 (iio:device3)\n"
                                       "  driver    kxcjk1013\n"
                                       "  place     accel-base\n"
                                       "  scale     0.001000 g a step\n"
                                       "  set to    50.0 readings a second\n"
                                       "  measured  125 readings a second, 240 different ones in all; move the laptop "
                                       "to learn more\n"
                                       "  verdict   offered; hears hard slaps only\n");
}

TEST_F(SensorReportTest, WhatWasMeasuredWhileItWasMovedDecides) {
    auto sensor = tried();
    EXPECT_EQ(sensor.verdict(), "offered; how fast it is shows when it is moved");
    sensor.sensor.statedRate = 50;
    for (const auto& [rate, verdict] :
         std::initializer_list<std::pair<double, std::string>>{{39.9, "not offered: it is too slow"},
                                                               {40.0, "offered; hears hard slaps only"},
                                                               {79.9, "offered; hears hard slaps only"},
                                                               {80.0, "offered; good"}}) {
        sensor.differentRate = rate;
        EXPECT_EQ(sensor.verdict(), verdict) << rate;
        EXPECT_EQ(sensor.isOffered(), rate >= 40) << rate;
    }
    EXPECT_NE(asText({sensor}, true).find("125 readings a second, 80 different ones a second while moved"),
              std::string::npos);
}

TEST_F(SensorReportTest, ASensorIsDescribedAsJson) {
    auto sensor = tried();
    sensor.sensor.name = "a \"name\"";
    sensor.error = "busy";
    const std::string text = asJson({sensor, sensor}, false);
    EXPECT_NE(text.find(R"({"device":"iio:device3","name":"a \"name\"","driver":"kxcjk1013","place":"accel-base",)"
                        R"("scale":[0.00980665,0.00980665,0.00980665],"offset":[0,0,0],"readings":250,)"
                        R"("different":240,"seconds":2,"error":"busy","offered":true,)"
                        R"("verdict":"offered, but not to be read now"},{)"),
              std::string::npos)
        << text;
}

TEST_F(SensorReportTest, EverySensorOfTheMachineIsRead) {
    system.addAccelerometer(0);
    system.set(system.addAccelerometer(1, "bmc150_accel_i2c", "i2c/1-0010") / "in_accel_scale", "broken");
    system.addAccelerometer(2, "st-accel-i2c", "i2c/1-0019");
    const auto sensors = trySensors(system.path(), 2s);
    ASSERT_EQ(sensors.size(), 3U);
    EXPECT_TRUE(sensors[0].isOffered());
    EXPECT_GT(sensors[0].readings, 0);
    EXPECT_EQ(sensors[0].different, 1);
    EXPECT_FALSE(sensors[0].differentRate);
    for (const auto& sensor : sensors) {
        if (sensor.sensor.driver == "bmc150_accel_i2c") {
            EXPECT_EQ(sensor.readings, 0);
            EXPECT_EQ(sensor.verdict(), "not offered: it does not tell its scale");
        }
        if (sensor.sensor.driver == "st-accel-i2c") {
            EXPECT_GT(sensor.readings, 0);
            EXPECT_FALSE(sensor.isOffered());
        }
    }
}

} // namespace
} // namespace quiverly
