// The script of clips/README.md that plays an escalating pack from its first clip to its last.

#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include "sound/SoundPlayer.h"
#include "support/FeltMotion.h"
#include "tools/simulate/Script.h"

namespace quiverly {
namespace {

namespace fs = std::filesystem;

struct Heard {
    double amplitude; // g
    int clip;         // number in its file's name
};

Script script() {
    auto read = readScript(QUIVERLY_SCRIPT);
    if (!read) throw std::runtime_error(read.error());
    return *read;
}

// What is heard when the script is played while this pack is chosen.
std::vector<Heard> heardWith(SoundPack pack) {
    FeltMotion felt;
    felt.platform.resources.folders = {QUIVERLY_RESOURCES};
    felt.settle();
    SoundPlayer player;
    player.load(pack);
    std::vector<Heard> heard;
    double amplitude = 0;
    felt.platform.audio.onPlay = [&](const VirtualAudio::PlayedClip& clip) {
        heard.push_back({amplitude, std::stoi(clip.file.stem().string())});
    };
    felt.detector.onSlap = [&](double score) {
        amplitude = score;
        player.playSlap(amplitude, false);
    };
    std::chrono::milliseconds now{};
    for (const TimedCommand& timed : script()) {
        felt.feel(static_cast<int>((timed.due - now).count()));
        now = timed.due;
        felt.motion.slap(std::get<command::Slap>(timed.command).blow);
    }
    felt.feel(3000);
    return heard;
}

int clipsIn(SoundPack pack) {
    const fs::directory_iterator clips(fs::path(QUIVERLY_RESOURCES) / "audio" / pack.folder());
    return static_cast<int>(std::distance(begin(clips), end(clips)));
}

class FromSoftToHardTest : public testing::TestWithParam<SoundPack> {};

TEST_P(FromSoftToHardTest, EverySlapOfTheScriptIsHeardHarderThanTheOneBefore) {
    const std::vector<Heard> heard = heardWith(GetParam());
    ASSERT_EQ(heard.size(), script().size());
    for (std::size_t slap = 1; slap < heard.size(); ++slap) {
        EXPECT_GT(heard[slap].amplitude, heard[slap - 1].amplitude) << slap;
    }
}

TEST_P(FromSoftToHardTest, TheClipsRunFromTheFirstOfThePackToItsLast) {
    const std::vector<Heard> heard = heardWith(GetParam());
    ASSERT_FALSE(heard.empty());
    EXPECT_EQ(heard.front().clip, 1);
    EXPECT_EQ(heard.back().clip, clipsIn(GetParam()));
    for (std::size_t slap = 1; slap < heard.size(); ++slap) EXPECT_GE(heard[slap].clip, heard[slap - 1].clip) << slap;
}

TEST(FromSoftToHardScriptTest, EndsAfterAboutAMinute) {
    const Script commands = script();
    ASSERT_FALSE(commands.empty());
    EXPECT_NEAR(static_cast<double>(commands.back().due.count()) / 1000, 60, 5);
}

std::vector<SoundPack> escalatingPacks() {
    std::vector<SoundPack> packs(SoundPack::allCases.begin(), SoundPack::allCases.end());
    std::erase_if(packs, [](SoundPack pack) { return !pack.escalates(); });
    return packs;
}

INSTANTIATE_TEST_SUITE_P(EscalatingPacks, FromSoftToHardTest, testing::ValuesIn(escalatingPacks()),
                         [](const auto& pack) { return std::string(pack.param.folder()); });

} // namespace
} // namespace quiverly
