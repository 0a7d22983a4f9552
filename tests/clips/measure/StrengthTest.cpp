#include "clips/measure/Strength.h"

#include <gtest/gtest.h>

#include "clips/signals.h"
#include "clips/synthesis/Oscillator.h"

namespace quiverly::clips {
namespace {

constexpr Strength ordinary{.seconds = 1, .loudness = -18, .brightness = 500, .density = 10, .range = 1};

double pointsMoreThanOrdinary(const Strength& strength) {
    return strength.points() - ordinary.points();
}

TEST(StrengthTest, EveryMeasureCountsByItsDoublings) {
    Strength longer = ordinary;
    longer.seconds *= 2;
    Strength denser = ordinary;
    denser.density *= 2;
    Strength brighter = ordinary;
    brighter.brightness *= 2;
    Strength wider = ordinary;
    wider.range += 1;
    Strength louder = ordinary;
    louder.loudness += 6;
    EXPECT_NEAR(pointsMoreThanOrdinary(longer), 1, 1e-9);
    EXPECT_NEAR(pointsMoreThanOrdinary(denser), 0.5, 1e-9);
    EXPECT_NEAR(pointsMoreThanOrdinary(brighter), 0.3, 1e-9);
    EXPECT_NEAR(pointsMoreThanOrdinary(wider), 0.25, 1e-9);
    EXPECT_NEAR(pointsMoreThanOrdinary(louder), 1, 1e-9);
}

TEST(StrengthTest, BrightnessCountsUpTo1000Hertz) {
    Strength bright = ordinary;
    bright.brightness = 1000;
    Strength brightest = ordinary;
    brightest.brightness = 4000;
    EXPECT_EQ(bright.points(), brightest.points());
}

TEST(StrengthTest, AToneIsMeasured) {
    const Signal tone = sine(2, 1000);
    const Strength strength = strengthOf(inBothChannels(tone));
    EXPECT_DOUBLE_EQ(strength.seconds, 2);
    EXPECT_NEAR(strength.loudness, 0, 0.1);
    EXPECT_NEAR(strength.brightness, 1000, 100);
    EXPECT_GE(strength.density, 1);
    EXPECT_LT(strength.density, 10);
    EXPECT_NEAR(strength.range, 0, 0.01);
}

TEST(StrengthTest, NoiseIsDenseAndHasNoPitchRange) {
    RandomNumbers random(1);
    const Signal noise = whiteNoise(1, random);
    const Strength strength = strengthOf(inBothChannels(noise));
    EXPECT_GT(strength.density, 35);
    EXPECT_EQ(strength.range, 0);
}

TEST(StrengthTest, TheRangeIsTheWayOfTheMiddleFourFifthsOfThePitch) {
    const Signal glide = sine(2, {{0, 200}, {0.3, 200}, {0.7, 800}, {1, 800}});
    EXPECT_NEAR(strengthOf(inBothChannels(glide)).range, 2, 0.1);
}

} // namespace
} // namespace quiverly::clips
