#include "clips/measure/Loudness.h"

#include <gtest/gtest.h>

#include <cmath>

#include "clips/synthesis/Oscillator.h"

namespace quiverly::clips {
namespace {

// The reference tone of ITU-R BS.1770: at full scale it measures -3.01 LUFS in one channel.
Signal referenceTone(double seconds) {
    return sine(seconds, 997);
}

TEST(LoudnessTest, TheReferenceToneMeasuresWhatTheRecommendationSays) {
    EXPECT_NEAR(momentaryLoudness({referenceTone(1), Signal(samplesIn(1))}), -3.01, 0.01);
    EXPECT_NEAR(momentaryLoudness({referenceTone(1), referenceTone(1)}), 0, 0.01);
}

TEST(LoudnessTest, ASoundOfAQuarterOfTheWindowIsFollowedBySilence) {
    EXPECT_NEAR(momentaryLoudness({referenceTone(0.1), Signal(samplesIn(0.1))}), -3.01 - 6.02, 0.1);
}

TEST(LoudnessTest, TheLoudestMomentCounts) {
    const Signal loudAtTheEnd = faded(referenceTone(2), {{0, 0.1}, {0.4, 0.1}, {0.5, 1}});
    EXPECT_NEAR(momentaryLoudness({loudAtTheEnd, Signal(samplesIn(2))}), -3.01, 0.01);
}

TEST(LoudnessTest, ATruePeakLiesBetweenSamplesWhereTheSignalDoes) {
    // A quarter of the sample rate, sampled 45 degrees beside its peaks.
    Signal tone;
    for (std::size_t index = 0; index < samplesIn(0.1); ++index) tone.push_back(index % 4 < 2 ? 0.5 : -0.5);
    EXPECT_NEAR(truePeak({tone, Signal(tone.size())}), 20 * std::log10(0.5 * std::sqrt(2)), 0.5);
}

TEST(LoudnessTest, TheTruePeakIsThatOfTheLouderChannel) {
    const Signal loud = faded(referenceTone(0.2), {{0, 0}, {0.3, 1}, {0.7, 1}, {1, 0}}); // a cut tone overshoots
    const Signal quiet = faded(loud, 0.1);
    EXPECT_NEAR(truePeak({quiet, loud}), 0, 0.05);
    EXPECT_NEAR(truePeak({quiet, quiet}), -20, 0.05);
}

} // namespace
} // namespace quiverly::clips
