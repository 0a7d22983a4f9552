#include "platform/linux/sound/Clip.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "platform/linux/sound/ToneClip.h"
#include "support/Files.h"
#include "support/TemporaryFolder.h"

namespace quiverly {
namespace {

// An ID3v2.3 tag with one picture of that many bytes. Sizes in the tag's head have seven bits a byte.
std::string tagWithPicture(std::size_t pictureBytes) {
    const auto bigEndian = [](std::size_t value, unsigned bits) {
        std::string bytes;
        for (unsigned byte = 4; byte-- > 0;) bytes += static_cast<char>((value >> (byte * bits)) & ((1U << bits) - 1));
        return bytes;
    };
    const std::string body = std::string("\0image/png\0\3\0", 13) + std::string(pictureBytes, '\xff');
    const std::string frame = "APIC" + bigEndian(body.size(), 8) + std::string(2, '\0') + body;
    return "ID3" + std::string("\3\0\0", 3) + bigEndian(frame.size(), 7) + frame;
}

class ClipTest : public testing::Test {
protected:
    std::filesystem::path file(const std::string& content) const { return folder.addFile("clip.mp3", content); }

    std::filesystem::path toneFile(const ToneClip& tone) const {
        tone.write(path());
        return path();
    }

    std::string contentOf(const ToneClip& tone) const { return bytesOf(toneFile(tone)); }

    std::filesystem::path path() const { return folder.path() / "clip.mp3"; }

    static std::size_t frames(const Clip& clip) { return clip.samples.size() / clip.channels; }

    const TemporaryFolder folder;
};

TEST_F(ClipTest, EveryRateInMonoAndStereoIsKeptToTheLastFrame) {
    for (const int rate : {8'000, 11'025, 12'000, 16'000, 22'050, 24'000, 32'000, 44'100, 48'000}) {
        for (const int channels : {1, 2}) {
            const auto clip = Clip::decode(toneFile({.pitch = 1000, .rate = rate, .channels = channels}));
            ASSERT_TRUE(clip) << rate << ' ' << channels;
            EXPECT_EQ(clip->rate, static_cast<std::uint32_t>(rate));
            EXPECT_EQ(clip->channels, channels);
            EXPECT_EQ(frames(*clip), static_cast<std::size_t>(rate / 2));
        }
    }
}

TEST_F(ClipTest, AVariableBitRateIsDecodedToTheLastFrame) {
    for (const int mode : {SF_BITRATE_MODE_AVERAGE, SF_BITRATE_MODE_VARIABLE}) {
        const std::string content = contentOf({.pitch = 1000, .bitRateMode = mode});
        EXPECT_NE(content.find("Xing"), std::string::npos); // the mark of a rate that varies
        const auto clip = Clip::decode(file(content));
        ASSERT_TRUE(clip);
        EXPECT_EQ(frames(*clip), 24'000U);
    }
}

TEST_F(ClipTest, ATagWithAPictureIsPassedOver) {
    const std::string tone = contentOf({.pitch = 1000});
    for (const std::size_t pictureBytes : {100U, 100'000U, 1'500'000U}) {
        const auto clip = Clip::decode(file(tagWithPicture(pictureBytes) + tone));
        ASSERT_TRUE(clip) << pictureBytes;
        EXPECT_EQ(frames(*clip), 24'000U) << pictureBytes;
    }
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
    EXPECT_FALSE(Clip::decode(file(tagWithPicture(5'000))));
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
    EXPECT_GT(frames(*clip), 12'000U);
    EXPECT_LT(frames(*clip), 36'000U);
}

TEST_F(ClipTest, NoTruncationAndNoFlippedByteDoesHarm) {
    constexpr std::size_t padding = 1'152; // frames that the encoder adds; how many, only a whole file tells
    const std::string whole = tagWithPicture(300) + contentOf({.pitch = 1000, .seconds = 0.3});
    for (std::size_t size = 0; size < whole.size(); size += 29) {
        const auto clip = Clip::decode(file(whole.substr(0, size)));
        if (!clip) continue;
        EXPECT_FALSE(clip->samples.empty());
        EXPECT_LE(frames(*clip), 14'400 + padding) << size;
    }
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
