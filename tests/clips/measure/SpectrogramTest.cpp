#include "clips/measure/Spectrogram.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "clips/signals.h"
#include "clips/synthesis/Oscillator.h"

namespace quiverly::clips {
namespace {

TEST(SpectrogramTest, HasAColumnEveryTenMilliseconds) {
    EXPECT_EQ(spectrogram(inBothChannels(sine(0.5, 440))).size(), 50U);
}

TEST(SpectrogramTest, ThePowerOfAFullScaleToneLiesInItsBand) {
    for (const std::size_t band : {std::size_t{5}, std::size_t{20}, std::size_t{38}}) {
        const Spectrum spectrum = spectrogram(inBothChannels(sine(0.5, bandCentre(band)))).at(20);
        const auto loudest = std::max_element(spectrum.begin(), spectrum.end());
        EXPECT_EQ(loudest - spectrum.begin(), static_cast<std::ptrdiff_t>(band));
        EXPECT_NEAR(decibels(*loudest), 0, 2) << band;
    }
}

TEST(SpectrogramTest, WhatLiesOutsideTheBandsDoesNotCount) {
    for (const double hertz : {20.0, 18000.0}) {
        const Spectrum spectrum = spectrogram(inBothChannels(sine(0.5, hertz))).at(20);
        EXPECT_LT(decibels(*std::max_element(spectrum.begin(), spectrum.end())), -40) << hertz;
    }
}

TEST(SpectrogramTest, SilenceIsAt80DecibelsBelowFullScale) {
    EXPECT_DOUBLE_EQ(decibels(0), -80);
    EXPECT_DOUBLE_EQ(decibels(1), 0);
}

TEST(SpectrogramTest, ASoundIsNoDistanceFromItselfAndAsFarFromAnotherAsThatFromIt) {
    const std::vector<Spectrum> low = spectrogram(inBothChannels(sine(0.5, 200)));
    const std::vector<Spectrum> high = spectrogram(inBothChannels(sine(0.3, 2000)));
    EXPECT_EQ(spectralDistance(low, low), 0);
    EXPECT_GT(spectralDistance(low, high), 5);
    EXPECT_EQ(spectralDistance(low, high), spectralDistance(high, low));
}

TEST(SpectrogramTest, WhereOneSoundHasEndedItCountsAsSilence) {
    Spectrum loud;
    loud.fill(1);
    EXPECT_DOUBLE_EQ(spectralDistance({loud}, {}), 80);
}

} // namespace
} // namespace quiverly::clips
