// The script that plays an escalating pack through, told by the documentation.

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

// What somebody hears who listens with this pack while the script is played.
std::vector<Heard> heardWith(SoundPack pack) {
    FeltMotion felt;
    felt.platform.resources.folders = {QUIVERLY_RESOURCES};
    felt.settle();
    SoundPlayer player;
    player.load(pack);
    std::vector<Heard> heard;
    felt.detector.onSlap = [&](double amplitude) {
        player.playSlap(amplitude, false);
        const fs::path file = felt.platform.audio.sounding().back().file;
        heard.push_back({amplitude, std::stoi(file.stem().string())});
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

TEST(FromSoftToHardScriptTest, IsOverInAboutAMinute) {
    EXPECT_NEAR(static_cast<double>(script().back().due.count()) / 1000, 60, 5);
}

INSTANTIATE_TEST_SUITE_P(EscalatingPacks, FromSoftToHardTest, testing::Values(SoundPack::sexy, SoundPack::lizard),
                         [](const auto& pack) { return std::string(pack.param.folder()); });

} // namespace
} // namespace quiverly
