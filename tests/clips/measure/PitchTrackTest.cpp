#include "clips/measure/PitchTrack.h"

#include <gtest/gtest.h>

#include "clips/signals.h"
#include "clips/synthesis/Oscillator.h"

namespace quiverly::clips {
namespace {

TEST(PitchTrackTest, ATonesPitchIsFoundAtEveryMoment) {
    for (const double hertz : {60.0, 220.0, 440.0, 1000.0}) {
        const std::vector<double> track = pitchTrack(inBothChannels(saw(0.5, hertz)));
        EXPECT_GE(track.size(), 20U) << hertz;
        for (const double pitch : track) EXPECT_NEAR(pitch, hertz, 0.05 * hertz);
    }
}

TEST(PitchTrackTest, AGlideIsFollowedFromItsStartToItsEnd) {
    const std::vector<double> track = pitchTrack(inBothChannels(sine(1, {{0, 200}, {1, 400}})));
    ASSERT_FALSE(track.empty());
    EXPECT_NEAR(track.front(), 200, 10);
    EXPECT_NEAR(track.back(), 400, 20);
}

TEST(PitchTrackTest, NoiseAndSilenceHaveNone) {
    RandomNumbers random(1);
    EXPECT_TRUE(pitchTrack(inBothChannels(whiteNoise(0.5, random))).empty());
    EXPECT_TRUE(pitchTrack(inBothChannels(Signal(samplesIn(0.5)))).empty());
}

TEST(PitchTrackTest, WhatIsMuchSofterThanTheLoudestMomentIsLeftOut) {
    const Signal tone = sine(1, 300);
    const std::size_t whole = pitchTrack(inBothChannels(tone)).size();
    const std::size_t half = pitchTrack(inBothChannels(faded(tone, {{0.45, 1}, {0.55, 0.01}}))).size();
    EXPECT_NEAR(static_cast<double>(half), 0.5 * static_cast<double>(whole), 5);
}

} // namespace
} // namespace quiverly::clips
