#include "platform/linux/sensors/iio/DistinctRate.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace quiverly {
namespace {

// Reads a sensor 125 times a second for some seconds; it takes new values at its own rate, of a motion at each time.
template<class Motion>
DistinctRate read(double sensorRate, double seconds, Motion motion) {
    DistinctRate rate;
    for (int reading = 0; reading < 125 * seconds; ++reading) {
        const double time = reading / 125.0;
        const double taken = std::floor(time * sensorRate + 1e-9) / sensorRate;
        rate.add({0.0, 0.0, motion(taken)}, time);
    }
    return rate;
}

double shaken(double time) {
    return 1.0 + std::sin(2 * std::numbers::pi * 3.3 * time);
}

TEST(DistinctRateTest, ASensorThatIsMovedShowsItsRate) {
    EXPECT_NEAR(read(5, 10, shaken).perSecond().value_or(0), 5, 1);
    EXPECT_NEAR(read(25, 10, shaken).perSecond().value_or(0), 25, 3);
    EXPECT_NEAR(read(50, 10, shaken).perSecond().value_or(0), 50, 8);
    EXPECT_NEAR(read(125, 10, shaken).perSecond().value_or(0), 125, 1);
    EXPECT_NEAR(read(1000, 10, shaken).perSecond().value_or(0), 125, 1);
}

TEST(DistinctRateTest, NothingIsKnownOfASensorAtRest) {
    EXPECT_FALSE(read(5, 10, [](double) { return 1.0; }).perSecond());
    const auto noisy = [](double time) { return 1.0 + 0.001 * std::sin(1000 * time); };
    EXPECT_FALSE(read(125, 10, noisy).perSecond());
}

TEST(DistinctRateTest, SixteenJumpsAreEnough) {
    DistinctRate rate;
    double time = 0;
    for (int reading = 0; reading < 17; ++reading) rate.add({reading * 0.1, 0.0, 0.0}, time += 0.02);
    EXPECT_FALSE(rate.perSecond());
    EXPECT_TRUE(rate.add({-1.0, 0.0, 0.0}, time += 0.02));
    EXPECT_NEAR(rate.perSecond().value_or(0), 50, 1e-6);
}

TEST(DistinctRateTest, AFastSensorThatIsSlappedNowAndThenIsNotTakenForSlow) {
    const auto slapped = [](double time) {
        const double since = std::fmod(time, 1.0);
        const double ringing = std::cos(2 * std::numbers::pi * 30 * since) * std::exp(-since / 0.03);
        return 1.0 + std::round(0.5 * ringing / 0.001) * 0.001; // in steps of 0.001 g
    };
    EXPECT_GT(read(125, 20, slapped).perSecond().value_or(0), DistinctRate::good);
}

TEST(DistinctRateTest, WhatIsMeasuredLastCounts) {
    DistinctRate rate = read(125, 10, shaken);
    for (int reading = 0; reading < 40; ++reading) rate.add({reading * 0.1, 0.0, 0.0}, 100.0 + reading * 0.2);
    EXPECT_NEAR(rate.perSecond().value_or(0), 5, 0.1);
}

} // namespace
} // namespace quiverly
