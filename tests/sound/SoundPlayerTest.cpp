#include <gtest/gtest.h>

#include <chrono>
#include <limits>
#include <map>
#include <string>
#include <type_traits>
#include <vector>

#include "platform/virtual/VirtualPlatform.h"
#include "sound/SoundPlayer.h"
#include "support/TemporaryFolder.h"

namespace quiverly {
namespace {

using namespace std::chrono_literals;

static_assert(!std::is_polymorphic_v<SoundPlayer>);

using Names = std::vector<std::string>;

std::string numbered(int number) {
    return std::to_string(number) + ".mp3";
}

class SoundPlayerTest : public testing::Test {
protected:
    SoundPlayerTest() {
        platform.resources.folders = {resources.path()};
        platform.audio.onPlay = [this](const VirtualAudio::PlayedClip& clip) { played.push_back(clip); };
    }

    void addClips(SoundPack pack, const Names& names) {
        for (const std::string& name : names) resources.addFile(std::filesystem::path("audio") / pack.folder() / name);
    }

    // Clips 1.mp3, 2.mp3 and so on.
    void addClips(SoundPack pack, int count) {
        for (int number = 1; number <= count; ++number) addClips(pack, Names{numbered(number)});
    }

    void load(SoundPack pack, int clips) {
        addClips(pack, clips);
        player.load(pack);
    }

    // The loaded clips of an escalating pack of at most eight, which a series of slaps goes through one by one. Forgets
    // the slaps before, and is forgotten afterwards.
    Names clipsOfSeries() {
        platform.calendar.advance(300s);
        Names clips;
        for (int count = 0; count < 40; ++count) {
            const std::string clip = slap();
            if (clips.empty() || clip != clips.back()) clips.push_back(clip);
        }
        platform.calendar.advance(300s);
        return clips;
    }

    // The file name of the clip that answers; "silence" when none does.
    std::string slap(double amplitude = 0.3) {
        played.clear();
        player.playSlap(amplitude, false);
        return answer();
    }

    std::string preview(double amplitude = 0.3) {
        played.clear();
        player.playHardwarePreview(amplitude);
        return answer();
    }

    std::string answer() const {
        EXPECT_LE(played.size(), 1U);
        return played.empty() ? "silence" : played[0].file.filename().string();
    }

    // The folder of the clip that answered last.
    std::string playedPack() const { return played.at(0).file.parent_path().filename().string(); }

    // The one clip that sounds now.
    std::string sounding() const {
        const auto clips = platform.audio.sounding();
        EXPECT_EQ(clips.size(), 1U);
        return clips.empty() ? "silence" : clips[0].file.filename().string();
    }

    TemporaryFolder resources;
    VirtualPlatform platform;
    std::vector<VirtualAudio::PlayedClip> played;
    SoundPlayer player;
};

TEST_F(SoundPlayerTest, BeginsWithTheSexyPackButWithoutItsClips) {
    addClips(SoundPack::sexy, {"28.mp3"});
    EXPECT_EQ(slap(), "silence");
    preview(); // loads, at its end, the pack that was current
    EXPECT_EQ(slap(), "28.mp3");
}

// load

TEST_F(SoundPlayerTest, ClipsAreInNaturalOrder) {
    addClips(SoundPack::lizard, {"10.mp3", "b.mp3", "2.mp3", "A.mp3", "1.mp3", "c.mp3"});
    player.load(SoundPack::lizard);
    EXPECT_EQ(clipsOfSeries(), (Names{"1.mp3", "2.mp3", "10.mp3", "A.mp3", "b.mp3", "c.mp3"}));
}

TEST_F(SoundPlayerTest, FilesWithOtherExtensionsAreIgnored) {
    addClips(SoundPack::lizard, {"1.mp3", "2.wav", "3.mp3.txt", "4mp3", "mp3", "README"});
    player.load(SoundPack::lizard);
    EXPECT_EQ(clipsOfSeries(), Names{"1.mp3"});
}

TEST_F(SoundPlayerTest, TheFolderBelowAudioComesBeforeTheOneAtTheTop) {
    addClips(SoundPack::lizard, {"below.mp3"});
    resources.addFile("lizard/top.mp3");
    player.load(SoundPack::lizard);
    EXPECT_EQ(clipsOfSeries(), Names{"below.mp3"});
}

TEST_F(SoundPlayerTest, AMissingFolderBelowAudioFallsThroughToTheOneAtTheTop) {
    resources.addFile("lizard/top.mp3");
    player.load(SoundPack::lizard);
    EXPECT_EQ(clipsOfSeries(), Names{"top.mp3"});
}

TEST_F(SoundPlayerTest, AnEmptyFolderBelowAudioIsTheEmptyList) {
    resources.addFolder("audio/lizard");
    resources.addFile("lizard/top.mp3");
    player.load(SoundPack::lizard);
    EXPECT_EQ(slap(), "silence");
}

TEST_F(SoundPlayerTest, APackWithoutAnyFolderIsSilentButCurrentAllTheSame) {
    load(SoundPack::pain, 2);
    player.load(SoundPack::lizard);
    EXPECT_EQ(slap(), "silence");
    addClips(SoundPack::lizard, Names{"late.mp3"});
    preview(); // loads, at its end, the pack that was current
    EXPECT_EQ(slap(), "late.mp3");
}

TEST_F(SoundPlayerTest, TheFolderIsLookedThroughOnlyWhenAPackIsLoaded) {
    load(SoundPack::sexy, 2);
    addClips(SoundPack::sexy, Names{"0.mp3"});
    EXPECT_EQ(slap(), "1.mp3");
    EXPECT_EQ(clipsOfSeries(), (Names{"1.mp3", "2.mp3"}));
}

TEST_F(SoundPlayerTest, EachSlapOpensItsClipAnew) {
    load(SoundPack::sexy, 1);
    int opened = 0;
    platform.audio.canOpen = [&](const std::filesystem::path&) { return ++opened > 0; };
    EXPECT_EQ(opened, 0);
    slap();
    slap();
    EXPECT_EQ(opened, 2);
}

TEST_F(SoundPlayerTest, LoadingLeavesTheSoundingClipAndTheCountedSlaps) {
    load(SoundPack::sexy, 30);
    slap();
    load(SoundPack::pain, 2);
    EXPECT_EQ(sounding(), "1.mp3");
    player.load(SoundPack::sexy);
    EXPECT_EQ(sounding(), "1.mp3");
    EXPECT_EQ(slap(), "4.mp3"); // the second of its series
}

// Packs that do not escalate

TEST_F(SoundPlayerTest, WithoutEscalationEveryClipIsEquallyLikelyAndMayComeTwiceInARow) {
    load(SoundPack::pain, 3);
    std::map<std::string, int> draws;
    int repeated = 0;
    std::string previous;
    for (int count = 0; count < 6'000; ++count) {
        const std::string clip = slap();
        ++draws[clip];
        repeated += clip == previous ? 1 : 0;
        previous = clip;
    }
    EXPECT_EQ(draws.size(), 3U);
    for (const auto& [clip, count] : draws) EXPECT_NEAR(count, 2'000, 200) << clip;
    EXPECT_NEAR(repeated, 2'000, 200);
}

TEST_F(SoundPlayerTest, WithoutEscalationSlapsAreNotCounted) {
    load(SoundPack::halo, 2);
    slap();
    slap();
    load(SoundPack::sexy, 30);
    EXPECT_EQ(slap(), "1.mp3");
}

// Seen with a clock that is set back: a slap that had been forgotten would be missing then.
TEST_F(SoundPlayerTest, WithoutEscalationNoCountedSlapIsForgotten) {
    load(SoundPack::sexy, 30);
    slap();
    load(SoundPack::halo, 2);
    platform.calendar.advance(400s);
    slap();
    platform.calendar.advance(-400s);
    player.load(SoundPack::sexy);
    EXPECT_EQ(slap(), "4.mp3");
}

// Packs that escalate

struct Escalation {
    int clips;
    std::vector<int> indices; // of the clip for the 1st, 2nd, 3rd slap of a series, and so on
};

class SoundPlayerEscalationTest : public SoundPlayerTest, public testing::WithParamInterface<Escalation> {};

// C x (1 - e^(-(n - 1) / 8)), rounded down, worked out with fifty digits.
const Escalation escalations[] = {
    {1, std::vector<int>(40, 0)},
    {5, {0, 0, 1, 1, 1, 2, 2, 2, 3, 3, 3, 3, 3, 4, 4, 4, 4, 4, 4, 4,
         4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4}},
    {10, {0, 1, 2, 3, 3, 4, 5, 5, 6, 6, 7, 7, 7, 8, 8, 8, 8, 8, 8, 9,
          9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9}},
    {30, {0,  3,  6,  9,  11, 13, 15, 17, 18, 20, 21, 22, 23, 24, 24, 25, 25, 26, 26, 27,
          27, 27, 28, 28, 28, 28, 28, 28, 29, 29, 29, 29, 29, 29, 29, 29, 29, 29, 29, 29}},
    {48, {0, 5, 10, 15, 18, 22, 25, 27, 30, 32, 34}},
};

TEST_P(SoundPlayerEscalationTest, EachFurtherSlapMovesTowardsTheLastClip) {
    load(SoundPack::lizard, GetParam().clips);
    int slaps = 0;
    for (const int index : GetParam().indices) {
        platform.calendar.advance(1s);
        EXPECT_EQ(slap(), numbered(index + 1)) << "slap " << ++slaps;
    }
}

TEST_P(SoundPlayerEscalationTest, ALongSeriesNeverPassesTheLastClip) {
    load(SoundPack::lizard, GetParam().clips);
    for (int count = 0; count < 1'000; ++count) slap();
    EXPECT_EQ(slap(), numbered(GetParam().clips));
}

INSTANTIATE_TEST_SUITE_P(PacksOf, SoundPlayerEscalationTest, testing::ValuesIn(escalations),
                         [](const auto& test) { return std::to_string(test.param.clips) + "Clips"; });

TEST_F(SoundPlayerTest, AMutedSlapIsAsIfItHadNotHappened) {
    load(SoundPack::sexy, 30);
    EXPECT_EQ(slap(), "1.mp3");
    played.clear();
    player.playSlap(0.3, true);
    EXPECT_TRUE(played.empty());
    EXPECT_EQ(slap(), "4.mp3"); // the second of its series
}

TEST_F(SoundPlayerTest, ASlapWithoutClipsIsNotCounted) {
    player.load(SoundPack::lizard);
    slap();
    load(SoundPack::lizard, 30);
    EXPECT_EQ(slap(), "1.mp3");
}

TEST_F(SoundPlayerTest, TheFirstSlapAfterMoreThanFiveQuietMinutesPlaysTheFirstClip) {
    load(SoundPack::sexy, 30);
    for (int count = 0; count < 9; ++count) slap();
    platform.calendar.advance(301s);
    EXPECT_EQ(slap(), "1.mp3");
    EXPECT_EQ(slap(), "4.mp3"); // the second of its series
}

TEST_F(SoundPlayerTest, ASlapExactlyThreeHundredSecondsOldNoLongerCounts) {
    load(SoundPack::sexy, 30);
    slap();
    platform.calendar.advance(300s);
    EXPECT_EQ(slap(), "1.mp3");
}

TEST_F(SoundPlayerTest, ASlapOneNanosecondYoungerThanThreeHundredSecondsCounts) {
    load(SoundPack::sexy, 30);
    slap();
    platform.calendar.advance(300s - 1ns);
    EXPECT_EQ(slap(), "4.mp3");
}

TEST_F(SoundPlayerTest, EachSlapOfASeriesIsForgottenByItself) {
    load(SoundPack::sexy, 30);
    slap();
    platform.calendar.advance(200s);
    slap();
    platform.calendar.advance(100s);
    EXPECT_EQ(slap(), "4.mp3"); // with the one 100 seconds ago
}

TEST_F(SoundPlayerTest, AfterTheClockWasSetBackSlapsOfTheFutureStillCount) {
    load(SoundPack::sexy, 30);
    slap();
    platform.calendar.advance(-1h);
    EXPECT_EQ(slap(), "4.mp3");
    EXPECT_EQ(slap(), "7.mp3");
}

TEST_F(SoundPlayerTest, ASlapOfTheFutureCountsWhileLaterOnesAreForgotten) {
    load(SoundPack::sexy, 30);
    slap();
    platform.calendar.advance(-1h);
    slap();
    platform.calendar.advance(300s);
    EXPECT_EQ(slap(), "4.mp3"); // with the first one
}

TEST_F(SoundPlayerTest, BackInAnEscalatingPackSlapsYoungerThanFiveMinutesStillCount) {
    load(SoundPack::sexy, 30);
    slap();
    platform.calendar.advance(100s);
    slap();
    load(SoundPack::pain, 1);
    slap();
    platform.calendar.advance(200s);
    player.load(SoundPack::sexy);
    EXPECT_EQ(slap(), "4.mp3");
}

TEST_F(SoundPlayerTest, ChangingFromSexyToLizardContinuesTheSeries) {
    load(SoundPack::sexy, 30);
    slap();
    load(SoundPack::lizard, 30);
    EXPECT_EQ(slap(), "4.mp3");
}

// play

TEST_F(SoundPlayerTest, AClipIsGivenItsVolumeThenPreparedThenPlayed) {
    load(SoundPack::sexy, 1);
    slap();
    ASSERT_EQ(played.size(), 1U);
    EXPECT_EQ(played[0].calls, (Names{"setVolume", "prepareToPlay", "play"}));
}

TEST_F(SoundPlayerTest, ANewClipStartsThenCutsOffTheOneBefore) {
    load(SoundPack::sexy, 30);
    slap();
    std::size_t soundingAtStart = 0;
    platform.audio.onPlay = [&](const VirtualAudio::PlayedClip&) {
        soundingAtStart = platform.audio.sounding().size();
    };
    slap();
    EXPECT_EQ(soundingAtStart, 2U);
    EXPECT_EQ(sounding(), "4.mp3");
    EXPECT_EQ(platform.audio.lentPlayers(), 1U);
}

TEST_F(SoundPlayerTest, AClipThatCannotBeOpenedIsSilentAndTheOneBeforeGoesOn) {
    load(SoundPack::sexy, 30);
    slap();
    platform.audio.canOpen = [](const auto& file) { return file.filename() != "4.mp3"; };
    EXPECT_EQ(slap(), "silence");
    EXPECT_EQ(sounding(), "1.mp3");
    EXPECT_EQ(slap(), "7.mp3"); // the silent one counted
}

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

struct Volume {
    double amplitude;
    float volume;
};

TEST_F(SoundPlayerTest, TheVolumeFollowsTheAmplitude) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    load(SoundPack::halo, 1);
    for (const auto& [amplitude, volume] : {
             Volume{0.0, 0.45F}, Volume{0.1, 0.57F}, Volume{0.2, 0.69F}, Volume{0.3, 0.81F}, Volume{0.4, 0.93F},
             Volume{0.4583, 0.99996F}, Volume{0.4584, 1.0F}, Volume{0.5, 1.0F}, Volume{1.0, 1.0F}, Volume{24.0, 1.0F},
             Volume{infinity, 1.0F}, Volume{nan, 1.0F}, // not a number is as loud as it gets
             Volume{-0.1, 0.33F}, Volume{-1.0, -0.75F}, // no lower bound
         }) {
        slap(amplitude);
        EXPECT_EQ(played.at(0).volume, volume) << amplitude;
    }
}

// playHardwarePreview

TEST_F(SoundPlayerTest, ThePreviewPlaysClip28OfSexyAndRestoresTheCurrentPack) {
    addClips(SoundPack::sexy, 30);
    load(SoundPack::halo, 2);
    EXPECT_EQ(preview(), "28.mp3");
    EXPECT_EQ(playedPack(), "sexy");
    EXPECT_EQ(sounding(), "28.mp3");
    slap();
    EXPECT_EQ(playedPack(), "halo");
}

TEST_F(SoundPlayerTest, ThePreviewPrefersThatExactNameToOneThatContainsIt) {
    addClips(SoundPack::sexy, {"028.mp3", "28.mp3", "28b.mp3"});
    EXPECT_EQ(preview(), "28.mp3");
}

TEST_F(SoundPlayerTest, WithoutClip28ThePreviewPlaysTheFirstWhoseNameContains28) {
    addClips(SoundPack::sexy, {"1.mp3", "128.mp3", "b28b.mp3"});
    EXPECT_EQ(preview(), "128.mp3");
}

TEST_F(SoundPlayerTest, WithoutAny28ThePreviewPlaysTheClipAFifthOfTheWayIn) {
    struct Expected {
        int clips;
        const char* clip;
    };
    for (const auto& [clips, clip] : {Expected{1, "101.mp3"}, Expected{2, "101.mp3"}, Expected{4, "101.mp3"},
                                      Expected{5, "102.mp3"}, Expected{10, "103.mp3"}, Expected{27, "106.mp3"}}) {
        for (int number = 101; number <= 100 + clips; ++number) addClips(SoundPack::sexy, Names{numbered(number)});
        EXPECT_EQ(preview(), clip) << clips << " clips";
    }
}

TEST_F(SoundPlayerTest, OfThirtyClipsThePreviewPlaysTheSeventh) {
    for (int number = 301; number <= 330; ++number) {
        if (number != 328) addClips(SoundPack::sexy, Names{numbered(number)});
    }
    addClips(SoundPack::sexy, Names{"331.mp3"});
    EXPECT_EQ(preview(), "307.mp3");
}

TEST_F(SoundPlayerTest, ThePreviewIsNeverSofterThanForPointThreeFive) {
    addClips(SoundPack::sexy, {"28.mp3"});
    for (const auto& [amplitude, volume] :
         {Volume{0.0, 0.87F}, Volume{0.2, 0.87F}, Volume{0.35, 0.87F}, Volume{0.4, 0.93F}, Volume{1.0, 1.0F},
          Volume{-3.0, 0.87F}, Volume{nan, 1.0F}}) { // not a number is as loud as it gets
        preview(amplitude);
        EXPECT_EQ(played.at(0).volume, volume) << amplitude;
    }
}

TEST_F(SoundPlayerTest, ThePreviewIsNotCounted) {
    addClips(SoundPack::sexy, 30);
    player.load(SoundPack::sexy);
    preview();
    EXPECT_EQ(slap(), "1.mp3");
}

TEST_F(SoundPlayerTest, ThePreviewOfAnEmptyPackIsSilentAndRestoresTheCurrentPack) {
    load(SoundPack::halo, 2);
    EXPECT_EQ(preview(), "silence");
    slap();
    EXPECT_EQ(playedPack(), "halo");
}

TEST_F(SoundPlayerTest, APreviewThatCannotBeOpenedRestoresTheCurrentPack) {
    addClips(SoundPack::sexy, {"28.mp3"});
    load(SoundPack::halo, 1);
    slap();
    platform.audio.canOpen = [](const auto&) { return false; };
    EXPECT_EQ(preview(), "silence");
    EXPECT_EQ(sounding(), "1.mp3");
    platform.audio.canOpen = nullptr;
    slap();
    EXPECT_EQ(playedPack(), "halo");
}

} // namespace
} // namespace quiverly
