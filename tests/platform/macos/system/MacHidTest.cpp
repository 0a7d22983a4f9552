#include <gtest/gtest.h>

#include <chrono>

#include "platform/hid.h"
#include "support/MacWithoutSensor.h"

namespace quiverly {
namespace {

class MacHidTest : public testing::Test {
protected:
    MacWithoutSensor mac;
};

TEST_F(MacHidTest, AClassThatDoesNotExistHasNoServices) {
    const auto services = hid::findServices(hid::matchingClass("QuiverlyHasNoSuchClass"));
    ASSERT_NE(services, nullptr);
    EXPECT_EQ(hid::nextService(*services), nullptr);
    EXPECT_EQ(hid::nextService(*services), nullptr);
}

// The run loop itself would return at once, and the sensor thread would spin.
TEST_F(MacHidTest, ARunLoopWithNothingScheduledRestsUntilTheTimeIsOver) {
    using namespace std::chrono_literals;
    const auto begin = std::chrono::steady_clock::now();
    hid::runLoop(0.02);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 20ms); // holds on the slowest machine too
}

} // namespace
} // namespace quiverly
