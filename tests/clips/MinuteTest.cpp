#include "clips/Minute.h"

#include <gtest/gtest.h>

#include <sndfile.hh>

#include "clips/ClipMaker.h"
#include "clips/synthesis/Oscillator.h"
#include "support/TemporaryFolder.h"

namespace quiverly::clips {
namespace {

PackRecipe twoTones() {
    const auto tone = [](RandomNumbers&) -> Stereo { return {sine(0.5, 440), sine(0.5, 440)}; };
    return {SoundPack::halo, {{"One", 1, tone}, {"Two", 2, tone}}};
}

TEST(MinuteTest, LastsAMinuteInWhichEveryClipIsFollowedByAPause) {
    const TemporaryFolder folder;
    const PackRecipe recipe = twoTones();
    ASSERT_TRUE(makePack(recipe, folder.path()));
    const std::filesystem::path file = folder.path() / "halo.wav";
    ASSERT_TRUE(writeMinute(recipe, folder.path(), file));

    SndfileHandle minute(file.string());
    ASSERT_EQ(minute.channels(), 2);
    ASSERT_EQ(minute.samplerate(), 48000);
    EXPECT_NEAR(static_cast<double>(minute.frames()) / 48000, 60, 0.01);
    std::vector<double> frames(static_cast<std::size_t>(2 * minute.frames()));
    ASSERT_EQ(minute.readf(frames.data(), minute.frames()), minute.frames());
    const auto peakIn = [&](std::size_t second) {
        return peakOf({&frames[second * 96000], &frames[second * 96000] + 24000});
    };
    EXPECT_GT(peakIn(0), 0.1);
    EXPECT_EQ(peakIn(15), 0);
    EXPECT_GT(peakIn(30), 0.1);
    EXPECT_EQ(peakIn(45), 0);
}

TEST(MinuteTest, AMissingClipAndAFolderThatIsNotThereAreNamed) {
    const TemporaryFolder folder;
    const PackRecipe recipe = twoTones();
    const auto unread = writeMinute(recipe, folder.path(), folder.path() / "halo.wav");
    ASSERT_FALSE(unread);
    EXPECT_TRUE(unread.error().starts_with((folder.path() / "halo/1.mp3").string())) << unread.error();
    ASSERT_TRUE(makePack(recipe, folder.path()));
    const auto unwritten = writeMinute(recipe, folder.path(), folder.path() / "missing/halo.wav");
    ASSERT_FALSE(unwritten);
    EXPECT_TRUE(unwritten.error().starts_with((folder.path() / "missing/halo.wav").string())) << unwritten.error();
}

} // namespace
} // namespace quiverly::clips
