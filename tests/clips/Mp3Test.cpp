#include "clips/Mp3.h"

#include <gtest/gtest.h>

#include <sndfile.hh>

#include <utility>

#include "clips/signals.h"
#include "clips/synthesis/Oscillator.h"
#include "support/TemporaryFolder.h"

namespace quiverly::clips {
namespace {

namespace fs = std::filesystem;

constexpr double encoderNoise = 0.01; // of full scale, root mean square; a shift by one sample makes 0.014 and more

fs::path waveFile(const TemporaryFolder& folder, int channels, int rate) {
    fs::path file = folder.path() / "empty.wav";
    const SndfileHandle made(file.string(), SFM_WRITE, SF_FORMAT_WAV | SF_FORMAT_PCM_16, channels, rate);
    return file;
}

TEST(Mp3Test, AClipIsReadAsItWasWrittenToTheSample) {
    const TemporaryFolder folder;
    const Curve swell{{0, 0}, {0.5, 0.5}, {1, 0}};
    const Stereo written{faded(sine(0.4, 440), swell), faded(sine(0.4, 880), swell)};
    ASSERT_TRUE(writeMp3(folder.path() / "clip.mp3", written, "Two tones"));
    const Stereo read = readMp3(folder.path() / "clip.mp3").value();
    ASSERT_EQ(read.left.size(), written.left.size());
    ASSERT_EQ(read.right.size(), written.right.size());
    EXPECT_LE(differenceOf(read.left, written.left), encoderNoise);
    EXPECT_LE(differenceOf(read.right, written.right), encoderNoise);
}

TEST(Mp3Test, AFileThatCannotBeWrittenIsNamed) {
    const TemporaryFolder folder;
    const fs::path file = folder.path() / "missing" / "clip.mp3";
    const auto written = writeMp3(file, {sine(0.1, 440), sine(0.1, 440)}, "A tone");
    ASSERT_FALSE(written);
    EXPECT_TRUE(written.error().starts_with(file.string() + ": ")) << written.error();
}

TEST(Mp3Test, AFileThatCannotBeReadIsNamed) {
    const TemporaryFolder folder;
    for (const fs::path& file : {folder.path() / "missing.mp3", folder.addFile("empty.mp3")}) {
        const auto read = readMp3(file);
        ASSERT_FALSE(read) << file;
        EXPECT_TRUE(read.error().starts_with(file.string() + ": ")) << read.error();
    }
}

TEST(Mp3Test, OnlyStereoAt48KilohertzIsRead) {
    const TemporaryFolder folder;
    EXPECT_TRUE(readMp3(waveFile(folder, 2, 48000)));
    for (const auto& [channels, rate] : {std::pair(1, 48000), std::pair(2, 44100)}) {
        const fs::path file = waveFile(folder, channels, rate);
        const auto read = readMp3(file);
        ASSERT_FALSE(read);
        EXPECT_EQ(read.error(), file.string() + ": This is not stereo at 48 kHz.");
    }
}

} // namespace
} // namespace quiverly::clips
