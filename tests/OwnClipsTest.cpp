// Clips that a user put into an own pack folder: whatever they are, each plays or is passed over.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <QByteArray>
#include <sndfile.hh>

#include "Files.h"
#include "TemporaryFolder.h"
#include "platform/bundle.h"
#include "platform/linux/sound/Clip.h"

namespace quiverly {
namespace {

namespace fs = std::filesystem;

class OwnClipsTest : public testing::Test {
protected:
    OwnClipsTest() {
        fs::create_directories(pack);
        qputenv("XDG_DATA_HOME", QByteArray::fromStdString(data.path().string()));
    }
    ~OwnClipsTest() override { qunsetenv("XDG_DATA_HOME"); }

    void put(const std::string& name, const std::string& bytes) {
        std::ofstream(pack / name, std::ios::binary) << bytes;
    }

    // Half a second of a tone, as an MP3.
    std::string tone(int rate, int channels, int bitRateMode = SF_BITRATE_MODE_CONSTANT) {
        const fs::path file = data.path() / "tone.mp3";
        SndfileHandle out(file.string(), SFM_WRITE, SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III, channels, rate);
        double level = 0.5; // to be set before the mode
        EXPECT_EQ(out.command(SFC_SET_COMPRESSION_LEVEL, &level, sizeof level), SF_TRUE);
        EXPECT_EQ(out.command(SFC_SET_BITRATE_MODE, &bitRateMode, sizeof bitRateMode), SF_TRUE);
        std::vector<float> samples(static_cast<std::size_t>(rate / 2 * channels));
        for (std::size_t i = 0; i < samples.size(); ++i) {
            samples[i] = 0.5F * static_cast<float>(std::sin(0.1 * static_cast<double>(i)));
        }
        EXPECT_EQ(out.writef(samples.data(), rate / 2), rate / 2);
        out = SndfileHandle();
        return bytesOf(file);
    }

    std::shared_ptr<const Clip> decoded(const std::string& bytes) {
        put("clip.mp3", bytes);
        return Clip::decode(pack / "clip.mp3");
    }

    std::vector<std::string> found() const {
        const std::vector<fs::path> files = bundle::files("mp3", "audio/pain").value();
        std::vector<std::string> names(files.size());
        std::transform(files.begin(), files.end(), names.begin(), [](const fs::path& file) { return file.filename(); });
        std::sort(names.begin(), names.end(), [](const auto& a, const auto& b) { return bundle::precedes(a, b); });
        return names;
    }

    static std::size_t frames(const Clip& clip) { return clip.samples.size() / clip.channels; }

    TemporaryFolder data;
    fs::path pack = data.path() / "quiverly" / "audio" / "pain";
};

// An ID3v2.3 tag with one picture of that many bytes (sizes in the tag's head have seven bits a byte).
std::string tagWithPicture(std::size_t pictureBytes) {
    const auto bigEndian = [](std::size_t value, unsigned bits) {
        std::string bytes;
        for (int byte = 3; byte >= 0; --byte) {
            bytes += static_cast<char>((value >> (static_cast<unsigned>(byte) * bits)) & ((1U << bits) - 1));
        }
        return bytes;
    };
    const std::string body = std::string("\0image/png\0\3\0", 13) + std::string(pictureBytes, '\xff');
    const std::string frame = "APIC" + bigEndian(body.size(), 8) + std::string(2, '\0') + body;
    return "ID3" + std::string("\3\0\0", 3) + bigEndian(frame.size(), 7) + frame;
}

TEST_F(OwnClipsTest, ForeignNamesAreFoundInTheirNaturalOrder) {
    const std::vector<std::string> names{
        "-rf.mp3",  "2 Füße.mp3",     "10 O'Malley \"quoted\" $(x).mp3", "Ärger.mp3", "悲鳴.mp3",
        "🦎.mp3", "two\nlines.mp3", std::string(250, 'z') + ".mp3"};
    for (const std::string& name : names) {
        put(name, "x");
    }
    const std::vector<std::string> order = found();
    EXPECT_TRUE(std::is_permutation(order.begin(), order.end(), names.begin(), names.end()));
    EXPECT_LT(std::find(order.begin(), order.end(), names[1]), std::find(order.begin(), order.end(), names[2]));
}

TEST_F(OwnClipsTest, OnlyVisibleFilesEndingInMp3InSmallLettersCount) {
    for (const char* name : {"1.mp3", "2.MP3", "3.Mp3", "4.wav", "5.mp3.txt", "mp3", ".6.mp3"}) {
        put(name, "x");
    }
    fs::create_directory(pack / "7.mp3");
    fs::create_symlink(pack / "nowhere", pack / "8.mp3");
    EXPECT_EQ(found(), std::vector<std::string>{"1.mp3"});
}

TEST_F(OwnClipsTest, FiveHundredClipsAreFoundInTheirNaturalOrder) {
    for (int number = 1; number <= 500; ++number) {
        put(std::to_string(number) + ".mp3", "x");
    }
    const std::vector<std::string> order = found();
    ASSERT_EQ(order.size(), 500U);
    for (std::size_t i = 0; i < order.size(); ++i) {
        EXPECT_EQ(order[i], std::to_string(i + 1) + ".mp3");
    }
}

TEST_F(OwnClipsTest, ClipsOfEveryRateInMonoAndStereoPlay) {
    for (const int rate : {8000, 11025, 12000, 16000, 22050, 24000, 32000, 44100, 48000}) {
        for (const int channels : {1, 2}) {
            const auto clip = decoded(tone(rate, channels));
            ASSERT_TRUE(clip) << rate << ' ' << channels;
            EXPECT_EQ(clip->rate, static_cast<std::uint32_t>(rate));
            EXPECT_EQ(clip->channels, channels);
            EXPECT_EQ(frames(*clip), static_cast<std::size_t>(rate / 2));
        }
    }
}

TEST_F(OwnClipsTest, AVariableBitRatePlaysToItsEnd) {
    for (const int mode : {SF_BITRATE_MODE_AVERAGE, SF_BITRATE_MODE_VARIABLE}) {
        const auto clip = decoded(tone(44100, 2, mode));
        ASSERT_TRUE(clip);
        EXPECT_EQ(frames(*clip), 22050U);
    }
}

TEST_F(OwnClipsTest, AClipBehindAPicturePlaysWhole) {
    for (const std::size_t pictureBytes : {100U, 100'000U, 1'500'000U}) {
        const auto clip = decoded(tagWithPicture(pictureBytes) + tone(44100, 2));
        ASSERT_TRUE(clip) << pictureBytes;
        EXPECT_EQ(frames(*clip), 22050U) << pictureBytes;
    }
}

TEST_F(OwnClipsTest, ATruncatedClipPlaysAsFarAsItGoes) {
    const std::string whole = tone(44100, 2);
    const auto clip = decoded(whole.substr(0, whole.size() / 2));
    ASSERT_TRUE(clip);
    EXPECT_GT(frames(*clip), 5000U);
    EXPECT_LT(frames(*clip), 22050U);
}

TEST_F(OwnClipsTest, WhereverAClipIsCutItPlaysInPartOrIsPassedOver) {
    constexpr std::size_t padding = 1152; // frames that the encoder adds; only at a whole clip's end they are known
    const std::string whole = tagWithPicture(300) + tone(22050, 1);
    for (std::size_t length = 0; length < whole.size(); length += 41) {
        if (const auto clip = decoded(whole.substr(0, length))) {
            EXPECT_FALSE(clip->samples.empty());
            EXPECT_LE(frames(*clip), 11025U + padding) << length;
        }
    }
}

TEST_F(OwnClipsTest, WhatIsNoSoundIsPassedOver) {
    EXPECT_FALSE(decoded(""));
    EXPECT_FALSE(decoded("Not a sound at all.\n"));
    EXPECT_FALSE(decoded(std::string(100'000, '\0')));
    EXPECT_FALSE(decoded(tagWithPicture(5000)));
    EXPECT_FALSE(Clip::decode(pack / "missing.mp3"));
    EXPECT_FALSE(Clip::decode(pack));
}

} // namespace
} // namespace quiverly
