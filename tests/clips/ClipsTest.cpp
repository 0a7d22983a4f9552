#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <functional>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <QByteArray>
#include <QCryptographicHash>

#include "clips/Mp3.h"
#include "clips/PackRecipe.h"
#include "clips/measure/Loudness.h"
#include "clips/measure/Spectrogram.h"
#include "clips/measure/Strength.h"
#include "platform/bundle.h"
#include "platform/virtual/VirtualPlatform.h"
#include "sound/SoundPlayer.h"
#include "support/Files.h"

namespace quiverly::clips {
namespace {

namespace fs = std::filesystem;

const fs::path resources = QUIVERLY_RESOURCES;
const fs::path audio = resources / "audio";

constexpr std::size_t fewestClips = 12;           // so that a pack does not grow tiresome within an evening
constexpr std::size_t fewestEscalatingClips = 18; // so that it escalates in small steps
constexpr double latestOnset = 0.005;             // seconds: a slap is answered at once
constexpr double onsetBelowPeak = 0.0316;         // of the clip's peak (-30 dB): what is softer is not heard beside it
constexpr double shortestClip = 0.3;              // seconds: a shorter one is over before it is recognised
constexpr double longestClip = 4;                 // seconds: a longer one wears the joke out
constexpr double usualLength = 1;                 // second,
constexpr double usualDeviation = 0.5;            // seconds more or less
constexpr double highestPeak = -1.5;              // dBTP: no converter clips between samples
constexpr double meanLoudness = -16;              // LUFS, momentary: as loud as speech, whatever the clip
constexpr double loudnessTolerance = 1.5;         // LU
constexpr double greatestRise = 3;                // LU over an escalating pack: stronger, not merely louder
constexpr double lastPart = 0.02;                 // seconds in which a clip must have faded
constexpr double greatestStep = 0.01;             // of full scale between two samples of the last part: more is a click
constexpr double greatestRest = 0.001;            // of full scale in the very last sample
constexpr double leastDistance = 9;               // dB between the spectra of any two clips: clearly different sounds
constexpr std::uintmax_t mostBytes = 3'000'000;

struct CommittedClip {
    std::string name;
    Stereo sound;
};

std::vector<CommittedClip> clipsOf(const PackRecipe& recipe) {
    std::vector<CommittedClip> clips;
    for (std::size_t index = 0; index < recipe.clips.size(); ++index) {
        const fs::path file = recipe.fileOf(index);
        auto sound = readMp3(audio / file);
        if (!sound) throw std::runtime_error(sound.error());
        clips.push_back({file.string(), *std::move(sound)});
    }
    return clips;
}

std::vector<CommittedClip> allClips() {
    std::vector<CommittedClip> clips;
    for (const PackRecipe& recipe : allPackRecipes()) std::ranges::move(clipsOf(recipe), std::back_inserter(clips));
    return clips;
}

std::vector<PackRecipe> escalatingPacks() {
    std::vector<PackRecipe> recipes = allPackRecipes();
    std::erase_if(recipes, [](const PackRecipe& recipe) { return !recipe.pack.escalates(); });
    return recipes;
}

double peakAt(const Stereo& sound, std::size_t index) {
    return std::max(std::abs(sound.left[index]), std::abs(sound.right[index]));
}

double onsetOf(const Stereo& sound) {
    const double least = onsetBelowPeak * std::max(peakOf(sound.left), peakOf(sound.right));
    std::size_t first = 0;
    while (first < sound.left.size() && peakAt(sound, first) < least) ++first;
    return static_cast<double>(first) / sampleRate;
}

double greatestStepAtTheEndOf(const Signal& channel) {
    double greatest = 0;
    for (std::size_t index = channel.size() - samplesIn(lastPart); index < channel.size(); ++index) {
        greatest = std::max(greatest, std::abs(channel[index] - channel[index - 1]));
    }
    return greatest;
}

std::string sha256Of(const fs::path& file) {
    const std::string bytes = bytesOf(file);
    const QByteArray view = QByteArray::fromRawData(bytes.data(), static_cast<int>(bytes.size()));
    return QCryptographicHash::hash(view, QCryptographicHash::Sha256).toHex().toStdString();
}

// The part of a clip that holds its tags.
std::string startOf(const fs::path& file) {
    return bytesOf(audio / file).substr(0, 2000);
}

// The content of a frame of the clip's ID3v2.3 tag: behind the frame's name its size in four bytes and two of flags.
std::string textOfTag(const fs::path& file, const std::string& frame) {
    const std::string start = startOf(file);
    const std::size_t at = start.find(frame);
    if (!start.starts_with("ID3") || at == std::string::npos) return "";
    const auto size = static_cast<unsigned char>(start[at + 7]);
    return start.substr(at + 10, size);
}

std::vector<fs::path> clipFiles() {
    std::vector<fs::path> files;
    for (const auto& entry : fs::recursive_directory_iterator(audio)) {
        if (entry.path().extension() == ".mp3") files.push_back(fs::relative(entry.path(), audio));
    }
    std::ranges::sort(files);
    return files;
}

TEST(ClipsTest, EveryPackHasARecipe) {
    std::vector<SoundPack> packs;
    for (const PackRecipe& recipe : allPackRecipes()) packs.push_back(recipe.pack);
    EXPECT_TRUE(std::ranges::equal(packs, SoundPack::allCases));
}

TEST(ClipsTest, EveryPackHoldsEnoughClips) {
    for (const PackRecipe& recipe : allPackRecipes()) {
        EXPECT_GE(recipe.clips.size(), recipe.pack.escalates() ? fewestEscalatingClips : fewestClips)
            << recipe.pack.folder();
    }
}

TEST(ClipsTest, TheFoldersHoldExactlyTheClipsOfTheRecipes) {
    std::vector<fs::path> expected;
    for (const PackRecipe& recipe : allPackRecipes()) {
        for (std::size_t index = 0; index < recipe.clips.size(); ++index) expected.push_back(recipe.fileOf(index));
    }
    std::ranges::sort(expected);
    EXPECT_EQ(clipFiles(), expected);
}

TEST(ClipsTest, TheNaturalOrderOfTheFilesIsTheOrderOfTheRecipes) {
    VirtualPlatform platform;
    platform.resources.folders = {resources};
    for (const PackRecipe& recipe : allPackRecipes()) {
        auto files = bundle::files("mp3", fs::path("audio") / recipe.pack.folder()).value();
        std::ranges::sort(files, [](const fs::path& a, const fs::path& b) {
            return bundle::precedes(a.filename().string(), b.filename().string());
        });
        std::vector<fs::path> expected;
        expected.reserve(recipe.clips.size());
        for (std::size_t index = 0; index < recipe.clips.size(); ++index) {
            expected.push_back(audio / recipe.fileOf(index));
        }
        EXPECT_EQ(files, expected);
    }
}

TEST(ClipsTest, TheOnboardingClipIsTheOneMadeForIt) {
    VirtualPlatform platform;
    platform.resources.folders = {resources};
    SoundPlayer player;
    player.playHardwarePreview(0.5);
    ASSERT_EQ(platform.audio.sounding().size(), 1U);
    EXPECT_EQ(platform.audio.sounding()[0].file, audio / "sexy" / "28.mp3");
}

TEST(ClipsTest, EveryClipIsStereoAt48Kilohertz) {
    for (const fs::path& file : clipFiles()) {
        const auto sound = readMp3(audio / file);
        EXPECT_TRUE(sound) << (sound ? "" : sound.error());
    }
}

TEST(ClipsTest, EveryClipKeepsItsEncodersTag) {
    for (const fs::path& file : clipFiles()) {
        const std::string start = startOf(file);
        const std::size_t tag = std::min(start.find("Xing"), start.find("Info"));
        ASSERT_NE(tag, std::string::npos) << file;
        EXPECT_NE(start.find("LAME", tag), std::string::npos) << file;
    }
}

TEST(ClipsTest, EveryClipNamesItsTitleItsMakerAndItsLicenceInItsTag) {
    for (const PackRecipe& recipe : allPackRecipes()) {
        for (std::size_t index = 0; index < recipe.clips.size(); ++index) {
            const fs::path file = recipe.fileOf(index);
            EXPECT_EQ(textOfTag(file, "TIT2"), '\0' + recipe.clips[index].title) << file;
            EXPECT_EQ(textOfTag(file, "TPE1"), std::string("\0Quiverly", 9)) << file;
            EXPECT_TRUE(textOfTag(file, "COMM").starts_with(std::string("\0eng\0CC0 1.0, ", 14))) << file;
        }
    }
}

TEST(ClipsTest, EveryClipSoundsWithinFiveMillisecondsOfItsStart) {
    for (const auto& [name, sound] : allClips()) EXPECT_LE(onsetOf(sound), latestOnset) << name;
}

TEST(ClipsTest, EveryClipLastsBetweenAThirdOfASecondAndFour) {
    for (const auto& [name, sound] : allClips()) {
        EXPECT_GE(secondsOf(sound), shortestClip) << name;
        EXPECT_LE(secondsOf(sound), longestClip) << name;
    }
}

TEST(ClipsTest, MostClipsLastAboutASecond) {
    const std::vector<CommittedClip> clips = allClips();
    const auto lastsAboutASecond = [](const CommittedClip& clip) {
        return std::abs(secondsOf(clip.sound) - usualLength) <= usualDeviation;
    };
    EXPECT_GT(2 * std::ranges::count_if(clips, lastsAboutASecond), std::ssize(clips));
}

TEST(ClipsTest, NoTruePeakReachesFullScale) {
    for (const auto& [name, sound] : allClips()) EXPECT_LE(truePeak(sound), highestPeak) << name;
}

TEST(ClipsTest, EveryClipIsAsLoudAsTheOthers) {
    for (const auto& [name, sound] : allClips()) {
        EXPECT_NEAR(momentaryLoudness(sound), meanLoudness, loudnessTolerance) << name;
    }
}

TEST(ClipsTest, AnEscalatingPackRisesLittleInLoudness) {
    for (const PackRecipe& recipe : escalatingPacks()) {
        std::vector<double> loudness;
        for (const CommittedClip& clip : clipsOf(recipe)) loudness.push_back(momentaryLoudness(clip.sound));
        EXPECT_GT(loudness.back(), loudness.front()) << recipe.pack.folder();
        EXPECT_LE(std::ranges::max(loudness) - std::ranges::min(loudness), greatestRise) << recipe.pack.folder();
    }
}

// Not only length makes a clip stronger, and nobody sorts the clips by these figures: each rises from third to third.
// likeness_test.py checks the range of the pitch.
TEST(ClipsTest, LengthLoudnessAndRoughnessRiseFromThirdToThirdOfAnEscalatingPack) {
    for (const PackRecipe& recipe : escalatingPacks()) {
        std::vector<Strength> strengths;
        for (const CommittedClip& clip : clipsOf(recipe)) strengths.push_back(strengthOf(clip.sound));
        using Part = double Strength::*;
        const auto rises = [&](Part part) {
            const auto meanOfThird = [&](std::size_t third) {
                const std::size_t first = third * strengths.size() / 3;
                const std::size_t last = (third + 1) * strengths.size() / 3;
                double sum = 0;
                for (std::size_t index = first; index < last; ++index) sum += strengths[index].*part;
                return sum / static_cast<double>(last - first);
            };
            return meanOfThird(0) < meanOfThird(1) && meanOfThird(1) < meanOfThird(2);
        };
        EXPECT_TRUE(rises(&Strength::seconds)) << recipe.pack.folder();
        EXPECT_TRUE(rises(&Strength::loudness)) << recipe.pack.folder();
        EXPECT_TRUE(rises(&Strength::roughness)) << recipe.pack.folder();
    }
}

TEST(ClipsTest, EveryClipEndsInAFadeWithoutAClick) {
    for (const auto& [name, sound] : allClips()) {
        EXPECT_LE(greatestStepAtTheEndOf(sound.left), greatestStep) << name;
        EXPECT_LE(greatestStepAtTheEndOf(sound.right), greatestStep) << name;
        EXPECT_LE(peakAt(sound, sound.left.size() - 1), greatestRest) << name;
    }
}

TEST(ClipsTest, NoTwoClipsSoundAlike) {
    std::vector<std::pair<std::string, std::vector<Spectrum>>> clips;
    for (const auto& [name, sound] : allClips()) clips.emplace_back(name, spectrogram(sound));
    for (auto one = clips.begin(); one != clips.end(); ++one) {
        for (auto other = one + 1; other != clips.end(); ++other) {
            EXPECT_GT(spectralDistance(one->second, other->second), leastDistance) << one->first << ' ' << other->first;
        }
    }
}

TEST(ClipsTest, TheWholeFolderIsSmall) {
    std::uintmax_t bytes = 0;
    for (const auto& entry : fs::recursive_directory_iterator(audio)) {
        if (entry.is_regular_file()) bytes += entry.file_size();
    }
    EXPECT_LE(bytes, mostBytes);
}

TEST(ClipsTest, TheListOfChecksumsIsThatOfTheFiles) {
    std::ostringstream expected;
    for (const fs::path& file : clipFiles()) expected << sha256Of(audio / file) << "  " << file.string() << '\n';
    EXPECT_EQ(bytesOf(audio / "SHA256SUMS"), expected.str());
}

} // namespace
} // namespace quiverly::clips
