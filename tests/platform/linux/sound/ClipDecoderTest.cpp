#include "platform/linux/sound/ClipDecoder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/sound/ToneClip.h"
#include "support/Files.h"
#include "support/TemporaryFolder.h"

namespace quiverly {
namespace {

constexpr std::size_t framesPerPiece = 1'152; // of an MP3 at 32 kHz and more

// Of the size in the head of a tag, each byte holds seven bits.
std::string bigEndian(std::size_t value, unsigned bitsPerByte) {
    std::string bytes;
    for (unsigned byte = 4; byte-- > 0;) {
        bytes += static_cast<char>((value >> (byte * bitsPerByte)) & ((1U << bitsPerByte) - 1));
    }
    return bytes;
}

std::string tag(const std::string& content) {
    return "ID3" + std::string("\3\0\0", 3) + bigEndian(content.size(), 7) + content;
}

// An ID3v2.3 tag with one picture of that many bytes.
std::string tagWithPicture(std::size_t pictureBytes) {
    const std::string body = std::string("\0image/png\0\3\0", 13) + std::string(pictureBytes, '\xff');
    return tag("APIC" + bigEndian(body.size(), 8) + std::string(2, '\0') + body);
}

std::string repeated(const std::string& text, std::size_t size) {
    std::string content;
    content.reserve(size + text.size());
    while (content.size() < size) content += text;
    return content;
}

// All samples that are left, piece by piece.
std::vector<float> samplesOf(ClipDecoder& clip) {
    std::vector<float> samples;
    for (auto piece = clip.samples(); !piece.empty(); piece = clip.samples()) {
        EXPECT_EQ(piece.size() % clip.channels(), 0U);
        EXPECT_LE(piece.size(), framesPerPiece * clip.channels());
        samples.insert(samples.end(), piece.begin(), piece.end());
        clip.take(piece.size());
    }
    EXPECT_EQ(clip.decodedFrames(), samples.size() / clip.channels());
    return samples;
}

class ClipDecoderTest : public testing::Test {
protected:
    std::filesystem::path file(const std::string& content) const { return folder.addFile("clip.mp3", content); }

    std::filesystem::path toneFile(const ToneClip& tone) const {
        tone.write(path());
        return path();
    }

    std::string contentOf(const ToneClip& tone) const { return bytesOf(toneFile(tone)); }

    std::filesystem::path path() const { return folder.path() / "clip.mp3"; }

    // How many frames the clip has; 0 when there is none.
    static std::size_t framesOf(const std::filesystem::path& path) {
        const auto clip = ClipDecoder::open(path);
        return clip ? samplesOf(*clip).size() / clip->channels() : 0;
    }

    const TemporaryFolder folder;
};

TEST_F(ClipDecoderTest, EveryRateInMonoAndStereoIsKeptToTheLastFrame) {
    for (const int rate : {8'000, 11'025, 12'000, 16'000, 22'050, 24'000, 32'000, 44'100, 48'000}) {
        for (const int channels : {1, 2}) {
            const auto clip = ClipDecoder::open(toneFile({.pitch = 1000, .rate = rate, .channels = channels}));
            ASSERT_TRUE(clip) << rate << ' ' << channels;
            EXPECT_EQ(clip->rate(), static_cast<std::uint32_t>(rate));
            EXPECT_EQ(clip->channels(), channels);
            EXPECT_EQ(samplesOf(*clip).size() / clip->channels(), static_cast<std::size_t>(rate / 2));
        }
    }
}

TEST_F(ClipDecoderTest, AVariableBitRateIsDecodedToTheLastFrame) {
    for (const int mode : {SF_BITRATE_MODE_AVERAGE, SF_BITRATE_MODE_VARIABLE}) {
        const std::string content = contentOf({.pitch = 1000, .bitRateMode = mode});
        EXPECT_NE(content.find("Xing"), std::string::npos); // the mark of a rate that varies
        EXPECT_EQ(framesOf(file(content)), 24'000U);
    }
}

TEST_F(ClipDecoderTest, ATagWithAPictureIsIgnored) {
    const std::string tone = contentOf({.pitch = 1000});
    for (const std::size_t pictureBytes : {100U, 100'000U, 1'500'000U}) {
        EXPECT_EQ(framesOf(file(tagWithPicture(pictureBytes) + tone)), 24'000U) << pictureBytes;
    }
}

TEST_F(ClipDecoderTest, StartsWithItsFirstFrameWhenTheFileTellsItsPadding) {
    const auto clip = ClipDecoder::open(toneFile({.pitch = 1000, .seconds = 0.25, .channels = 1}));
    ASSERT_TRUE(clip);
    const std::vector<float> samples = samplesOf(*clip);
    EXPECT_EQ(samples.size(), 12'000U);
    EXPECT_NEAR(samples.at(12), 0.5, 0.05); // a quarter of the first wave
}

TEST_F(ClipDecoderTest, OpeningDecodesOnePieceHoweverLongTheClip) {
    for (const double seconds : {0.5, 3.5, 31.0}) {
        const auto clip = ClipDecoder::open(toneFile({.pitch = 1000, .seconds = seconds}));
        ASSERT_TRUE(clip);
        EXPECT_GT(clip->decodedFrames(), 0U);
        EXPECT_LE(clip->decodedFrames(), framesPerPiece);
    }
}

TEST_F(ClipDecoderTest, NothingIsDecodedUntilThePieceBeforeIsTaken) {
    const auto clip = ClipDecoder::open(toneFile({.pitch = 1000}));
    ASSERT_TRUE(clip);
    const std::size_t first = clip->decodedFrames();
    EXPECT_EQ(clip->samples().size(), first * 2);
    clip->take(2);
    EXPECT_EQ(clip->samples().size(), (first - 1) * 2);
    EXPECT_EQ(clip->decodedFrames(), first);
    clip->take((first - 1) * 2);
    EXPECT_EQ(clip->decodedFrames(), first);
    EXPECT_FALSE(clip->samples().empty());
    EXPECT_GT(clip->decodedFrames(), first);
}

TEST_F(ClipDecoderTest, AFileThatIsNotAnMp3IsNotAClip) {
    EXPECT_FALSE(ClipDecoder::open(folder.path() / "missing.mp3"));
    EXPECT_FALSE(ClipDecoder::open(folder.path()));
    EXPECT_FALSE(ClipDecoder::open(file("")));
    EXPECT_FALSE(ClipDecoder::open(file("Dear diary, today I was slapped again.\n")));
    EXPECT_FALSE(ClipDecoder::open(file(std::string(100'000, '\0'))));
    EXPECT_FALSE(ClipDecoder::open(file(std::string(100'000, '\xff'))));
    EXPECT_FALSE(ClipDecoder::open(file("ID3\x04")));
    EXPECT_FALSE(ClipDecoder::open(file(tagWithPicture(5'000))));
    EXPECT_FALSE(ClipDecoder::open(file("\xff\xfb\x90\x64")));
    for (const int format :
         {SF_FORMAT_WAV | SF_FORMAT_PCM_16, SF_FORMAT_FLAC | SF_FORMAT_PCM_16, SF_FORMAT_OGG | SF_FORMAT_VORBIS}) {
        EXPECT_FALSE(ClipDecoder::open(toneFile({.pitch = 1000, .format = format})));
    }
}

TEST_F(ClipDecoderTest, AFileWithoutASingleFrameIsNotAClip) {
    EXPECT_FALSE(ClipDecoder::open(toneFile({.pitch = 1000, .seconds = 0})));
}

TEST_F(ClipDecoderTest, OfATruncatedFileTheBeginningIsLeft) {
    const std::string whole = contentOf({.pitch = 1000, .seconds = 1.0});
    const std::size_t frames = framesOf(file(whole.substr(0, whole.size() / 2)));
    EXPECT_GT(frames, 12'000U);
    EXPECT_LT(frames, 36'000U);
}

TEST_F(ClipDecoderTest, AFileThatTurnsBadInTheMiddleEndsThere) {
    const std::string whole = contentOf({.pitch = 1000, .seconds = 1.0});
    for (const std::string& rest :
         {std::string(200'000, '\0'), std::string(200'000, '\xff'), tagWithPicture(200'000)}) {
        const std::size_t frames = framesOf(file(whole.substr(0, whole.size() / 2) + rest));
        EXPECT_GT(frames, 12'000U);
        EXPECT_LT(frames, 36'000U);
    }
}

TEST_F(ClipDecoderTest, AFileThatIsCutOffWhileItPlaysEndsThere) {
    const auto clip = ClipDecoder::open(toneFile({.pitch = 1000, .seconds = 10}));
    ASSERT_TRUE(clip);
    ASSERT_EQ(::truncate(path().c_str(), 100), 0);
    EXPECT_LT(samplesOf(*clip).size(), 2U * 48'000U); // no more than was in the buffer
}

TEST_F(ClipDecoderTest, NoTruncationAndNoFlippedByteDoesHarm) {
    constexpr std::size_t padding = framesPerPiece; // that the encoder adds; how much, only a whole file tells
    const std::string whole = tagWithPicture(300) + contentOf({.pitch = 1000, .seconds = 0.3});
    for (std::size_t size = 0; size < whole.size(); size += 29) {
        EXPECT_LE(framesOf(file(whole.substr(0, size))), 14'400 + padding) << size;
    }
    for (std::size_t position = 0; position < whole.size(); position += 17) {
        std::string broken = whole;
        broken[position] = static_cast<char>(~broken[position]);
        framesOf(file(broken));
    }
}

// Files that would keep a decoder searching.
TEST_F(ClipDecoderTest, AHostileFileIsNotReadFarInSearchOfSound) {
    const std::string tone = contentOf({.pitch = 1000});
    for (const std::string& trap :
         {tag(""), tag(std::string(5'000, 'x')), std::string("APET"), std::string("\xff\xfb\x90\x64"),
          std::string("TAG") + std::string(125, 'x'), std::string("RIFF"), std::string("x")}) {
        const std::string traps = repeated(trap, 1'200'000);
        const std::string trapped = traps + tone;
        EXPECT_FALSE(ClipDecoder::open(file(trapped))) << trap.substr(0, 4);
        EXPECT_LT(framesOf(file(tone + trapped)), 30'000U) << trap.substr(0, 4);
    }
}

TEST_F(ClipDecoderTest, WhatAFileSaysOfItsLengthMakesItNoLonger) {
    std::string content = contentOf({.pitch = 1000, .seconds = 0.1, .channels = 1});
    const std::size_t info = content.find("Xing");
    ASSERT_NE(info, std::string::npos);
    content.replace(info + 8, 4, "\x7f\xff\xff\xff"); // frames of the file
    const std::size_t frames = framesOf(file(content));
    EXPECT_GE(frames, 4'800U);
    EXPECT_LT(frames, 4'800U + 3 * framesPerPiece);
}

TEST_F(ClipDecoderTest, ALongFileIsCutToHalfAMinute) {
    EXPECT_EQ(framesOf(toneFile({.pitch = 1000, .seconds = 31})), ClipDecoder::mostSamples / 2);
}

TEST_F(ClipDecoderTest, NothingIsPrinted) {
    const std::string whole = contentOf({.pitch = 1000});
    std::string broken = whole;
    for (std::size_t position = 1'000; position < broken.size(); position += 50) broken[position] = '\x55';
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    framesOf(file(whole.substr(0, whole.size() / 2)));
    framesOf(file(whole.substr(0, whole.size() / 2) + std::string(5'000, 'x') + whole));
    framesOf(file(whole.substr(1'000)));
    framesOf(file(whole + whole));
    framesOf(file(broken));
    framesOf(file(std::string(100'000, 'x')));
    framesOf(file(tag(repeated("TXXX", 1'000))));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(ClipDecoderTest, APipeInPlaceOfTheFileIsNotWaitedFor) {
    ASSERT_EQ(::mkfifo(path().c_str(), 0600), 0);
    EXPECT_FALSE(ClipDecoder::open(path()));
}

TEST_F(ClipDecoderTest, ALinkLeadsToItsFile) {
    std::filesystem::rename(toneFile({.pitch = 1000}), folder.path() / "elsewhere");
    std::filesystem::create_symlink("elsewhere", path());
    EXPECT_TRUE(ClipDecoder::open(path()));
}

} // namespace
} // namespace quiverly
