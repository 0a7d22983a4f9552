#include "tools/import/ImportedSound.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include <ebur128.h>

#include "support/Files.h"
#include "support/TemporaryFolder.h"
#include "tools/import/sounds.h"

namespace quiverly {
namespace {

namespace fs = std::filesystem;

// Greatest momentary loudness in LUFS, with silence after the sound.
double loudnessOf(TestSound sound) {
    ebur128_state* const made = ebur128_init(2, 48000, EBUR128_MODE_M);
    const auto release = [](ebur128_state* state) { ebur128_destroy(&state); };
    const std::unique_ptr<ebur128_state, decltype(release)> meter(made, release);
    sound.samples.resize(sound.samples.size() + 2 * std::size_t{19200});
    double greatest = -HUGE_VAL;
    for (std::size_t at = 0; at + 960 <= sound.samples.size(); at += 960) {
        ebur128_add_frames_float(meter.get(), &sound.samples[at], 480);
        double loudness = 0;
        ebur128_loudness_momentary(meter.get(), &loudness);
        greatest = std::max(greatest, loudness);
    }
    return greatest;
}

float peakOf(const TestSound& sound) {
    float peak = 0;
    for (const float sample : sound.samples) peak = std::max(peak, std::abs(sample));
    return peak;
}

// Seconds until a sample passes the level.
double onsetOf(const TestSound& sound, float level) {
    const auto first = std::ranges::find_if(sound.samples, [level](float sample) { return std::abs(sample) > level; });
    return static_cast<double>(first - sound.samples.begin()) / sound.channels / sound.rate;
}

class ImportedSoundTest : public testing::Test {
protected:
    const TemporaryFolder folder;
    const fs::path clip = folder.path() / "1.mp3";

    TestSound imported(const TestSound& sound, int format = SF_FORMAT_WAV | SF_FORMAT_FLOAT) {
        const auto done = importSound(written(sound, folder.path() / "sound", format), clip);
        if (!done) throw std::runtime_error(done.error());
        return soundOf(clip);
    }
};

TEST_F(ImportedSoundTest, ASoundOfAnyKindBecomesStereoAt48Kilohertz) {
    for (const int format :
         {SF_FORMAT_WAV | SF_FORMAT_PCM_16, SF_FORMAT_AIFF | SF_FORMAT_PCM_24, SF_FORMAT_FLAC | SF_FORMAT_PCM_16,
          SF_FORMAT_OGG | SF_FORMAT_VORBIS, SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III}) {
        for (const int channels : {1, 2}) {
            const TestSound sound = imported(toneBetweenSilence(0, 0.6, 0, 0.3F, 44100, channels), format);
            EXPECT_EQ(sound.rate, 48000) << format;
            EXPECT_EQ(sound.channels, 2) << format;
            EXPECT_NEAR(sound.seconds(), 0.6, 0.03) << format;
        }
    }
}

TEST_F(ImportedSoundTest, MoreThanTwoChannelsAreMixed) {
    EXPECT_NEAR(imported(toneBetweenSilence(0, 0.6, 0, 0.3F, 48000, 6)).seconds(), 0.6, 0.03);
}

TEST_F(ImportedSoundTest, TheClipIsAnMp3WithItsEncodersTag) {
    imported(toneBetweenSilence(0, 0.5, 0, 0.3F));
    const std::string start = bytesOf(clip).substr(0, 2000);
    EXPECT_TRUE(start.find("Xing") != std::string::npos || start.find("Info") != std::string::npos);
    EXPECT_NE(start.find("LAME"), std::string::npos);
}

TEST_F(ImportedSoundTest, SilenceBeforeTheSoundIsCutToFiveMillisecondsAndSilenceAfterItAway) {
    const TestSound sound = imported(toneBetweenSilence(0.8, 0.5, 1.5, 0.3F));
    EXPECT_NEAR(onsetOf(sound, 0.05F), 0.005, 0.002);
    EXPECT_NEAR(sound.seconds(), 0.5, 0.04);
}

TEST_F(ImportedSoundTest, ASoundThatBeginsAtOnceLosesNothing) {
    EXPECT_LT(onsetOf(imported(toneBetweenSilence(0, 0.5, 0, 0.3F)), 0.05F), 0.002);
}

TEST_F(ImportedSoundTest, SoftAndLoudSoundsBecomeEquallyLoud) {
    for (const float gain : {0.004F, 0.1F, 0.99F}) {
        EXPECT_NEAR(loudnessOf(imported(toneBetweenSilence(0, 1, 0, gain))), -16, 0.5) << gain;
    }
}

TEST_F(ImportedSoundTest, ASoundOfPeaksIsSofterRatherThanClipped) {
    TestSound clicks = toneBetweenSilence(0, 1, 0, 0.001F);
    for (std::size_t at = 0; at < clicks.samples.size(); at += 19200) clicks.samples[at] = clicks.samples[at + 1] = 1;
    const TestSound sound = imported(clicks);
    EXPECT_LT(peakOf(sound), 0.95F);
    EXPECT_LT(loudnessOf(sound), -18);
}

TEST_F(ImportedSoundTest, TheEndIsFaded) {
    const TestSound sound = imported(toneBetweenSilence(0, 0.5, 0, 0.5F));
    for (std::size_t at = sound.samples.size() - 20; at < sound.samples.size(); ++at) {
        EXPECT_LT(std::abs(sound.samples[at]), 0.005F);
    }
}

TEST_F(ImportedSoundTest, AClipLastsHalfAMinuteAtMost) {
    EXPECT_NEAR(imported(toneBetweenSilence(0, 31, 0, 0.2F)).seconds(), 30, 0.05);
}

TEST_F(ImportedSoundTest, WhatIsNoSoundIsSilentOrIsMissingIsNamedWithTheReason) {
    const fs::path text = folder.addFile("text.wav", "This is not a sound.");
    const fs::path silent = written(toneBetweenSilence(0, 1, 0, 0), folder.path() / "silent.wav");
    for (const fs::path& file : {text, silent, folder.path() / "missing.wav", folder.path()}) {
        const auto done = importSound(file, clip);
        ASSERT_FALSE(done) << file;
        EXPECT_TRUE(done.error().starts_with(file.string() + ": ")) << done.error();
        EXPECT_FALSE(fs::exists(clip));
    }
}

TEST_F(ImportedSoundTest, AClipThatCannotBeWrittenIsNamed) {
    const fs::path sound = written(toneBetweenSilence(0, 0.5, 0, 0.3F), folder.path() / "sound.wav");
    const fs::path missing = folder.path() / "missing" / "1.mp3";
    const auto done = importSound(sound, missing);
    ASSERT_FALSE(done);
    EXPECT_TRUE(done.error().starts_with(missing.string() + ": ")) << done.error();
}

TEST_F(ImportedSoundTest, SamplesThatAreNotNumbersCountAsSilence) {
    TestSound sound = toneBetweenSilence(0, 0.5, 0, 0.3F);
    sound.samples[1000] = NAN;
    sound.samples[2000] = INFINITY;
    EXPECT_NEAR(loudnessOf(imported(sound)), -16, 0.5);
}

} // namespace
} // namespace quiverly
