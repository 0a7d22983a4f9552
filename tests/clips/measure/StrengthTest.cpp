#include "clips/measure/Strength.h"

#include <gtest/gtest.h>

#include "clips/signals.h"
#include "clips/synthesis/Oscillator.h"

namespace quiverly::clips {
namespace {

Strength strengthOfTone(const Curve& beats, double depth) {
    return strengthOf(inBothChannels(fluttered(sine(1, 1000), beats, depth)));
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

TEST(StrengthTest, BeatsOf30To75ASecondMakeASoundRough) {
    const double rough = strengthOfTone(45, 0.9).roughness;
    EXPECT_GT(rough, 0.5);
    EXPECT_LT(strengthOfTone(45, 0.3).roughness, 0.5 * rough);
    EXPECT_LT(strengthOfTone(45, 0).roughness, 0.1);
    EXPECT_LT(strengthOfTone(5, 0.9).roughness, 0.3 * rough);
    EXPECT_LT(strengthOfTone(300, 0.9).roughness, 0.3 * rough);
}

TEST(StrengthTest, SilenceIsNotRough) {
    EXPECT_EQ(strengthOf(inBothChannels(Signal(samplesIn(0.5)))).roughness, 0);
}

} // namespace
} // namespace quiverly::clips
