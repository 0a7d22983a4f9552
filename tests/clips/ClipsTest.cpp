#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <iterator>
#include <map>
#include <numeric>
#include <sstream>
#include <string>
#include <vector>

#include <QByteArray>
#include <QCryptographicHash>

#include "clips/Mp3.h"
#include "clips/Pack.h"
#include "clips/measure/Loudness.h"
#include "clips/measure/Spectrogram.h"
#include "clips/measure/Strength.h"
#include "platform/bundle.h"
#include "platform/virtual/VirtualPlatform.h"
#include "sound/SoundPlayer.h"
#include "support/Files.h"
#include "support/TemporaryFolder.h"

namespace quiverly::clips {
namespace {

namespace fs = std::filesystem;

const fs::path resources = QUIVERLY_RESOURCES;
const fs::path audio = resources / "audio";

// Enough that a pack does not tire the ear within an evening.
const std::map<std::string, std::size_t> fewestClips{{"pain", 16}, {"sexy", 30}, {"halo", 12}, {"lizard", 18}};

constexpr double latestOnset = 0.005;     // seconds: a slap is answered at once
constexpr double onsetBelowPeak = 0.0316; // of the clip's peak (-30 dB): softer than that is not heard beside it
constexpr double shortestClip = 0.3;      // seconds: shorter ones are over before they are recognised
constexpr double longestClip = 4;         // seconds: longer ones outstay the joke
constexpr double aboutASecond = 1;        // second: how long most clips last,
constexpr double give = 0.5;              // seconds more or less
constexpr double highestPeak = -1.5;      // dBTP: no converter clips between samples
constexpr double wantedLoudness = -16;    // LUFS, momentary: as loud as speech, whatever the clip
constexpr double loudnessTolerance = 1.5; // LU
constexpr double greatestRise = 3;        // LU over an escalating pack: stronger, not merely louder
constexpr double lastPart = 0.02;         // seconds in which a clip must have faded
constexpr double greatestStep = 0.01;     // of full scale between two samples of the last part: more is a click
constexpr double greatestRest = 0.001;    // of full scale in the very last sample
constexpr double leastDistance = 9;       // dB between the spectra of any two clips: what nobody takes for the same
constexpr std::uintmax_t mostBytes = 3'000'000;
constexpr double mostDifference = 0.003; // of full scale, root mean square: -50 dB, the encoder's own noise

struct Heard {
    std::string name;
    Stereo sound;
};

std::vector<Heard> heard(const Pack& pack) {
    std::vector<Heard> clips;
    for (std::size_t index = 0; index < pack.clips.size(); ++index) {
        clips.push_back({fileOf(pack, index).string(), readMp3(audio / fileOf(pack, index))});
    }
    return clips;
}

std::vector<Heard> heardInAllPacks() {
    std::vector<Heard> clips;
    for (const Pack& pack : allPacks()) std::ranges::move(heard(pack), std::back_inserter(clips));
    return clips;
}

double secondsOf(const Stereo& sound) {
    return static_cast<double>(sound.left.size()) / sampleRate;
}

double peakAt(const Stereo& sound, std::size_t index) {
    return std::max(std::abs(sound.left[index]), std::abs(sound.right[index]));
}

double onsetOf(const Stereo& sound) {
    const double least = onsetBelowPeak * std::max(peakOf(sound.left), peakOf(sound.right));
    std::size_t first = 0;
    while (peakAt(sound, first) < least) ++first;
    return static_cast<double>(first) / sampleRate;
}

double greatestStepAtTheEndOf(const Signal& channel) {
    double greatest = 0;
    for (std::size_t index = channel.size() - samplesIn(lastPart); index < channel.size(); ++index) {
        greatest = std::max(greatest, std::abs(channel[index] - channel[index - 1]));
    }
    return greatest;
}

double differenceOf(const Signal& one, const Signal& other) {
    double sum = 0;
    for (std::size_t index = 0; index < one.size(); ++index) {
        sum += (one[index] - other[index]) * (one[index] - other[index]);
    }
    return std::sqrt(sum / static_cast<double>(one.size()));
}

std::string sha256Of(const fs::path& file) {
    const std::string bytes = bytesOf(file);
    const QByteArray view = QByteArray::fromRawData(bytes.data(), static_cast<int>(bytes.size()));
    return QCryptographicHash::hash(view, QCryptographicHash::Sha256).toHex().toStdString();
}

// The title and the first frame of a clip.
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

TEST(ClipsTest, EveryPackHoldsEnoughClips) {
    for (const Pack& pack : allPacks()) {
        EXPECT_GE(pack.clips.size(), fewestClips.at(pack.name.folder())) << pack.name.folder();
    }
}

TEST(ClipsTest, TheFoldersHoldExactlyTheClipsOfTheScores) {
    std::vector<fs::path> expected;
    for (const Pack& pack : allPacks()) {
        for (std::size_t index = 0; index < pack.clips.size(); ++index) expected.push_back(fileOf(pack, index));
    }
    std::ranges::sort(expected);
    EXPECT_EQ(clipFiles(), expected);
}

TEST(ClipsTest, NaturalFileNameOrderIsTheOrderOfTheScore) {
    VirtualPlatform platform;
    platform.resources.folders = {resources};
    for (const Pack& pack : allPacks()) {
        auto files = bundle::files("mp3", fs::path("audio") / pack.name.folder()).value();
        std::ranges::sort(files, [](const fs::path& a, const fs::path& b) {
            return bundle::precedes(a.filename().string(), b.filename().string());
        });
        ASSERT_EQ(files.size(), pack.clips.size());
        for (std::size_t index = 0; index < files.size(); ++index) EXPECT_EQ(files[index], audio / fileOf(pack, index));
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
    for (const fs::path& file : clipFiles()) EXPECT_NO_THROW(readMp3(audio / file)) << file;
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
    for (const Pack& pack : allPacks()) {
        for (std::size_t index = 0; index < pack.clips.size(); ++index) {
            const fs::path file = fileOf(pack, index);
            EXPECT_EQ(textOfTag(file, "TIT2"), '\0' + pack.clips[index].title) << file;
            EXPECT_EQ(textOfTag(file, "TPE1"), std::string("\0Quiverly", 9)) << file;
            EXPECT_TRUE(textOfTag(file, "COMM").starts_with(std::string("\0eng\0CC0 1.0, ", 14))) << file;
        }
    }
}

TEST(ClipsTest, EveryClipSoundsWithinFiveMillisecondsOfItsStart) {
    for (const auto& [name, sound] : heardInAllPacks()) EXPECT_LE(onsetOf(sound), latestOnset) << name;
}

TEST(ClipsTest, EveryClipLastsBetweenAThirdOfASecondAndFour) {
    for (const auto& [name, sound] : heardInAllPacks()) {
        EXPECT_GE(secondsOf(sound), shortestClip) << name;
        EXPECT_LE(secondsOf(sound), longestClip) << name;
    }
}

TEST(ClipsTest, MostClipsLastAboutASecond) {
    const std::vector<Heard> clips = heardInAllPacks();
    const auto lastsAboutASecond = [](const Heard& clip) {
        return std::abs(secondsOf(clip.sound) - aboutASecond) <= give;
    };
    EXPECT_GT(2 * std::ranges::count_if(clips, lastsAboutASecond), std::ssize(clips));
}

TEST(ClipsTest, NoTruePeakReachesFullScale) {
    for (const auto& [name, sound] : heardInAllPacks()) EXPECT_LE(truePeak(sound), highestPeak) << name;
}

TEST(ClipsTest, EveryClipIsAsLoudAsTheOthers) {
    for (const auto& [name, sound] : heardInAllPacks()) {
        EXPECT_NEAR(momentaryLoudness(sound), wantedLoudness, loudnessTolerance) << name;
    }
}

TEST(ClipsTest, AnEscalatingPackRisesLittleInLoudness) {
    for (const Pack& pack : allPacks()) {
        if (!pack.name.escalates()) continue;
        std::vector<double> loudness;
        for (const Heard& clip : heard(pack)) loudness.push_back(momentaryLoudness(clip.sound));
        EXPECT_GT(loudness.back(), loudness.front()) << pack.name.folder();
        EXPECT_LE(std::ranges::max(loudness) - std::ranges::min(loudness), greatestRise) << pack.name.folder();
    }
}

TEST(ClipsTest, EveryClipIsStrongerThanTheOneBeforeInAnEscalatingPack) {
    for (const Pack& pack : allPacks()) {
        if (!pack.name.escalates()) continue;
        double before = -HUGE_VAL;
        for (const auto& [name, sound] : heard(pack)) {
            const double points = strengthOf(sound).points();
            EXPECT_GT(points, before) << name;
            before = points;
        }
    }
}

TEST(ClipsTest, LengthLoudnessAndDensityAllRiseFromTheFirstToTheLastThirdOfAnEscalatingPack) {
    for (const Pack& pack : allPacks()) {
        if (!pack.name.escalates()) continue;
        std::vector<Strength> strengths;
        for (const Heard& clip : heard(pack)) strengths.push_back(strengthOf(clip.sound));
        const auto third = static_cast<std::ptrdiff_t>(strengths.size() / 3);
        const auto rises = [&](double Strength::*part) {
            const auto sum = [part](double total, const Strength& strength) { return total + strength.*part; };
            return std::accumulate(strengths.end() - third, strengths.end(), 0.0, sum) >
                   std::accumulate(strengths.begin(), strengths.begin() + third, 0.0, sum);
        };
        EXPECT_TRUE(rises(&Strength::seconds)) << pack.name.folder();
        EXPECT_TRUE(rises(&Strength::loudness)) << pack.name.folder();
        EXPECT_TRUE(rises(&Strength::density)) << pack.name.folder();
    }
}

TEST(ClipsTest, EveryClipEndsInAFadeWithoutAClick) {
    for (const auto& [name, sound] : heardInAllPacks()) {
        EXPECT_LE(greatestStepAtTheEndOf(sound.left), greatestStep) << name;
        EXPECT_LE(greatestStepAtTheEndOf(sound.right), greatestStep) << name;
        EXPECT_LE(peakAt(sound, sound.left.size() - 1), greatestRest) << name;
    }
}

TEST(ClipsTest, NoTwoClipsSoundAlike) {
    std::vector<std::pair<std::string, std::vector<Spectrum>>> clips;
    for (const auto& [name, sound] : heardInAllPacks()) clips.emplace_back(name, spectrogram(sound));
    for (auto one = clips.begin(); one != clips.end(); ++one) {
        for (auto other = one + 1; other != clips.end(); ++other) {
            EXPECT_GT(distanceBetween(one->second, other->second), leastDistance) << one->first << ' ' << other->first;
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

TEST(ClipsTest, MadeTwiceTheFirstTheMiddleAndTheLastClipOfEveryPackHaveTheSameBytes) {
    const TemporaryFolder once;
    const TemporaryFolder again;
    for (const Pack& pack : allPacks()) {
        for (const std::size_t index : {std::size_t{0}, pack.clips.size() / 2, pack.clips.size() - 1}) {
            make(pack, index, once.path());
            make(pack, index, again.path());
            const fs::path file = fileOf(pack, index);
            EXPECT_TRUE(bytesOf(once.path() / file) == bytesOf(again.path() / file)) << file;
        }
    }
}

TEST(ClipsTest, MadeAnewEveryClipSoundsTheSame) {
    const TemporaryFolder folder;
    makeAll(folder.path());
    for (const fs::path& file : clipFiles()) {
        const Stereo kept = readMp3(audio / file);
        const Stereo made = readMp3(folder.path() / file);
        ASSERT_EQ(made.left.size(), kept.left.size()) << file;
        EXPECT_LE(differenceOf(made.left, kept.left), mostDifference) << file;
        EXPECT_LE(differenceOf(made.right, kept.right), mostDifference) << file;
    }
}

} // namespace
} // namespace quiverly::clips
