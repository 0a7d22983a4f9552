#include "platform/linux/sound/Clip.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "Files.h"
#include "TemporaryFolder.h"
#include "ToneClip.h"

namespace quiverly {
namespace {

class ClipTest : public testing::Test {
protected:
    std::filesystem::path file(const std::string& content) const { return folder.addFile("clip.mp3", content); }

    std::filesystem::path toneFile(const ToneClip& tone) const {
        tone.write(path());
        return path();
    }

    std::string contentOf(const ToneClip& tone) const { return bytesOf(toneFile(tone)); }

    std::filesystem::path path() const { return folder.path() / "clip.mp3"; }

    const TemporaryFolder folder;
};

TEST_F(ClipTest, KeepsTheRateAndTheChannelsOfItsFile) {
    const auto clip = Clip::decode(toneFile({.pitch = 1000, .seconds = 0.25, .rate = 44'100, .channels = 1}));
    ASSERT_TRUE(clip);
    EXPECT_EQ(clip->rate, 44'100U);
    EXPECT_EQ(clip->channels, 1);
    EXPECT_NEAR(static_cast<double>(clip->samples.size()), 0.25 * 44'100, 2 * 1152);
}

TEST_F(ClipTest, StartsWithItsFirstFrameWhenTheFileTellsItsPadding) {
    const auto clip = Clip::decode(toneFile({.pitch = 1000, .seconds = 0.25, .channels = 1}));
    ASSERT_TRUE(clip);
    EXPECT_EQ(clip->samples.size(), 12'000U);
    EXPECT_NEAR(clip->samples[12], 0.5, 0.05); // a quarter of the first wave
}

TEST_F(ClipTest, WhatIsNoSoundIsNoClip) {
    EXPECT_FALSE(Clip::decode(folder.path() / "missing.mp3"));
    EXPECT_FALSE(Clip::decode(folder.path()));
    EXPECT_FALSE(Clip::decode(file("")));
    EXPECT_FALSE(Clip::decode(file("Dear diary, today I was slapped again.\n")));
    EXPECT_FALSE(Clip::decode(file(std::string(100'000, '\0'))));
    EXPECT_FALSE(Clip::decode(file(std::string(100'000, '\xff'))));
    EXPECT_FALSE(Clip::decode(file("ID3\x04")));
    EXPECT_FALSE(Clip::decode(file("\xff\xfb\x90\x64")));
}

TEST_F(ClipTest, AFileWithoutASingleFrameIsNoClip) {
    EXPECT_FALSE(Clip::decode(toneFile({.pitch = 1000, .seconds = 0, .format = SF_FORMAT_WAV | SF_FORMAT_PCM_16})));
    EXPECT_FALSE(Clip::decode(toneFile({.pitch = 1000, .seconds = 0})));
}

TEST_F(ClipTest, OfATruncatedFileTheBeginningIsLeft) {
    const std::string whole = contentOf({.pitch = 1000, .seconds = 1.0});
    const auto clip = Clip::decode(file(whole.substr(0, whole.size() / 2)));
    ASSERT_TRUE(clip);
    EXPECT_NEAR(static_cast<double>(clip->samples.size()), 48'000, 24'000);
}

TEST_F(ClipTest, NoTruncationAndNoFlippedByteDoesHarm) {
    const std::string whole = contentOf({.pitch = 1000, .seconds = 0.3});
    for (std::size_t size = 0; size < whole.size(); size += 29) Clip::decode(file(whole.substr(0, size)));
    for (std::size_t position = 0; position < whole.size(); position += 17) {
        std::string broken = whole;
        broken[position] = static_cast<char>(~broken[position]);
        const auto clip = Clip::decode(file(broken));
        if (clip) {
            EXPECT_EQ(clip->samples.size() % clip->channels, 0U);
        }
    }
}

TEST_F(ClipTest, WhatAFileSaysOfItsLengthReservesNothing) {
    std::string content =
        contentOf({.pitch = 1000, .seconds = 0.1, .channels = 1, .format = SF_FORMAT_WAV | SF_FORMAT_PCM_16});
    for (std::size_t position = 40; position < 44; ++position) content[position] = '\x7f'; // bytes of sound
    const auto clip = Clip::decode(file(content));
    ASSERT_TRUE(clip);
    EXPECT_EQ(clip->samples.size(), 4'800U);
    EXPECT_LT(clip->samples.capacity(), 100'000U);
}

TEST_F(ClipTest, ALongFileIsCutToHalfAMinute) {
    const auto clip = Clip::decode(toneFile({.pitch = 1000, .seconds = 31}));
    ASSERT_TRUE(clip);
    EXPECT_EQ(clip->samples.size(), Clip::mostSamples);
}

TEST_F(ClipTest, MoreChannelsThanTheServerTakesAreNoClip) {
    constexpr int format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    EXPECT_TRUE(Clip::decode(toneFile({.pitch = 1000, .seconds = 0.1, .channels = 32, .format = format})));
    EXPECT_FALSE(Clip::decode(toneFile({.pitch = 1000, .seconds = 0.1, .channels = 33, .format = format})));
    EXPECT_FALSE(Clip::decode(toneFile({.pitch = 1000, .seconds = 0.01, .rate = 1'000'000, .format = format})));
}

TEST_F(ClipTest, APipeInPlaceOfTheFileHoldsNobodyUp) {
    ASSERT_EQ(::mkfifo(path().c_str(), 0600), 0);
    EXPECT_FALSE(Clip::decode(path()));
}

TEST_F(ClipTest, ALinkLeadsToItsFile) {
    std::filesystem::rename(toneFile({.pitch = 1000}), folder.path() / "elsewhere");
    std::filesystem::create_symlink("elsewhere", path());
    EXPECT_TRUE(Clip::decode(path()));
}

} // namespace
} // namespace quiverly
