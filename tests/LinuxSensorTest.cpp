#include <gtest/gtest.h>

#include "LiveLaptop.h"
#include "Waiting.h"
#include "sensing/AccelerometerReader.h"

namespace quiverly {
namespace {

TEST(LinuxSensorTest, AReaderReceivesSamplesOfOneGFromTheLaptopAtRest) {
    LiveLaptop laptop;
    AccelerometerReader reader;
    Samples samples;
    reader.onSample = samples.receiver();
    ASSERT_TRUE(reader.start()) << reader.lastOpenError().value_or("no reason");
    samples.waitFor(50);
    for (const Acceleration& sample : samples.all()) {
        EXPECT_NEAR(sample.x, 0.0, 0.01);
        EXPECT_NEAR(sample.y, 0.0, 0.01);
        EXPECT_NEAR(sample.z, 1.0, 0.01);
    }
}

} // namespace
} // namespace quiverly
