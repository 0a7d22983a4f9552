#include "platform/audio.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "platform/linux/sound/Playback.h"
#include "platform/linux/sound/SoundServer.h"
#include "platform/linux/sound/ToneClip.h"
#include "support/Waiting.h"

namespace quiverly {
namespace {

using testing::Test;
using testing::TestWithParam;
using testing::Values;

// Plays clips through the port and listens to what the sound server makes of them.
template<class Base>
class Listening : public Base {
protected:
    Listening() { ::alarm(100); } // nothing here may hang
    ~Listening() override { ::alarm(0); }

    std::filesystem::path clip(const ToneClip& tone) {
        auto file = server.folder() / (std::to_string(++clips) + ".mp3");
        tone.write(file);
        return file;
    }

    audio::PlayerHandle play(const ToneClip& tone, float volume = 1.0F) {
        auto player = audio::create(clip(tone));
        if (!player) {
            ADD_FAILURE() << "the clip cannot be decoded";
            return nullptr;
        }
        audio::setVolume(*player, volume);
        audio::prepareToPlay(*player);
        audio::play(*player);
        return player;
    }

    // Forgets what was heard so far.
    void startListening() { start = server.recordedFrames(); }

    Recording heard() const { return server.recordingSince(start); }

    void waitForTone(int pitch) {
        waitUntil([&] { return std::ranges::count(heard().pitches(), pitch) > 0; });
    }

    // Waits until nothing plays, and has been heard not to.
    void waitForSilence() {
        waitUntil([&] { return server.streams() == 0; });
        server.listen(0.3);
    }

    // Once the server has made up for the time it stood still.
    void listenToWhatFollows() {
        server.control("info");
        server.listen(0.3);
        server.control("info");
        server.listen(0.3);
    }

    // Lets a clip of that pitch play to its end.
    void playToItsEnd(int pitch) {
        const auto player = play({.pitch = pitch, .seconds = 0.3});
        waitForTone(pitch);
        waitForSilence();
    }

    SoundServer server;

private:
    std::size_t start = 0; // frame
    int clips = 0;
};

using LinuxAudioTest = Listening<Test>;
using LinuxAudioFormatTest = Listening<TestWithParam<ToneClip>>;

TEST_P(LinuxAudioFormatTest, AClipIsHeardAtItsPitchAndLengthInBothEars) {
    server.start();
    const ToneClip tone = GetParam();
    const auto player = play(tone);
    waitForTone(tone.pitch);
    waitForSilence();

    const auto notes = heard().notes();
    ASSERT_EQ(notes.size(), 1U);
    EXPECT_EQ(notes[0].pitch, tone.pitch);
    EXPECT_NEAR(notes[0].seconds, tone.seconds, 0.05);
    EXPECT_NEAR(notes[0].left, 0.5 / std::sqrt(2.0), 0.01);
    EXPECT_NEAR(notes[0].right, notes[0].left, 0.001);
}

INSTANTIATE_TEST_SUITE_P(Formats, LinuxAudioFormatTest,
                         Values(ToneClip{.pitch = 500}, ToneClip{.pitch = 1000, .channels = 1},
                                ToneClip{.pitch = 2000, .rate = 44'100},
                                ToneClip{.pitch = 500, .rate = 44'100, .channels = 1},
                                ToneClip{.pitch = 1000, .rate = 22'050, .channels = 1},
                                ToneClip{.pitch = 2000, .rate = 22'050}, ToneClip{.pitch = 1000, .seconds = 3.5}));

TEST_F(LinuxAudioTest, TheVolumeScalesTheClip) {
    server.start();
    std::vector<double> levels;
    for (const float volume : {1.0F, 0.45F, 0.0F, -1.0F}) {
        startListening();
        const auto player = play({.pitch = 1000}, volume);
        waitUntil([&] { return server.streams() == 1; });
        waitForSilence();
        const auto notes = heard().notes();
        levels.push_back(notes.empty() ? 0 : notes[0].left);
    }
    EXPECT_NEAR(levels[1] / levels[0], 0.45, 0.02 * 0.45);
    EXPECT_EQ(levels[2], 0);
    EXPECT_EQ(levels[3], 0);
}

TEST_F(LinuxAudioTest, AVolumeSetWhileTheClipSoundsWaitsForTheNextPlay) {
    server.start();
    const auto player = play({.pitch = 1000});
    waitForTone(1000);
    audio::setVolume(*player, 0.45F);
    waitForSilence();
    audio::play(*player);
    waitUntil([&] { return heard().notes().size() == 2; });
    waitForSilence();

    const auto notes = heard().notes();
    ASSERT_EQ(notes.size(), 2U);
    EXPECT_NEAR(notes[0].left, 0.5 / std::sqrt(2.0), 0.01);
    EXPECT_NEAR(notes[0].seconds, 0.5, 0.05);
    EXPECT_NEAR(notes[1].left / notes[0].left, 0.45, 0.02 * 0.45);
}

TEST_F(LinuxAudioTest, ANewClipCutsOffTheOneBefore) {
    server.start();
    auto player = play({.pitch = 500, .seconds = 8});
    waitForTone(500);
    player = play({.pitch = 2000, .seconds = 0.5});
    waitForTone(2000);
    waitForSilence();

    const auto notes = heard().notes();
    ASSERT_EQ(heard().pitches(), (std::vector{500, 2000})); // nothing of the first is left after the second
    EXPECT_NEAR(notes[1].seconds, 0.5, 0.05);
    EXPECT_NEAR(notes[1].left, 0.5 / std::sqrt(2.0), 0.01); // nor under it
}

TEST_F(LinuxAudioTest, OfClipsInQuickSuccessionTheLastIsHeardWhole) {
    server.start();
    audio::PlayerHandle player;
    for (int count = 0; count < 50; ++count) player = play({.pitch = 1000, .seconds = 0.2});
    player = play({.pitch = 2000, .seconds = 0.5});
    waitForTone(2000);
    waitForSilence();

    const auto notes = heard().notes();
    ASSERT_FALSE(notes.empty());
    EXPECT_EQ(notes.back().pitch, 2000);
    EXPECT_NEAR(notes.back().seconds, 0.5, 0.05);
}

TEST_F(LinuxAudioTest, ReleasingThePlayerEndsItsSound) {
    server.start();
    auto player = play({.pitch = 1000, .seconds = 8});
    waitForTone(1000);
    player.reset();
    waitForSilence();
    const std::size_t end = server.recordedFrames();
    server.listen(0.3);

    EXPECT_TRUE(server.recordingSince(end).notes().empty());
    EXPECT_LT(heard().notes().at(0).seconds, 7);
}

TEST_F(LinuxAudioTest, APlayerReleasedBeforeItsStreamStandsIsNotHeard) {
    server.start();
    play({.pitch = 1000}).reset();
    playToItsEnd(2000);
    EXPECT_EQ(heard().pitches(), std::vector{2000});
}

TEST_F(LinuxAudioTest, ReleasingAPlayerThatWasCutOffLeavesTheNewOneSounding) {
    server.start();
    auto first = play({.pitch = 500, .seconds = 8});
    waitForTone(500);
    const auto second = play({.pitch = 2000, .seconds = 0.5});
    first.reset();
    waitForTone(2000);
    waitForSilence();
    EXPECT_NEAR(heard().notes().back().seconds, 0.5, 0.05);
}

TEST_F(LinuxAudioTest, APlayerThatNeverPlayedIsSilent) {
    server.start();
    auto sounding = play({.pitch = 1000, .seconds = 0.5});
    waitForTone(1000);
    audio::create(clip({.pitch = 500})).reset();
    waitForSilence();
    ASSERT_EQ(heard().pitches(), std::vector{1000});
    EXPECT_NEAR(heard().notes()[0].seconds, 0.5, 0.05);
}

TEST_F(LinuxAudioTest, AClipThatHasDrainedLetsTheDeviceSleep) {
    server.start();
    const auto player = play({.pitch = 1000, .seconds = 0.3});
    waitUntil([&] { return server.streams() == 1; });
    waitUntil([&] { return server.streams() == 0; }); // though the player is still there
}

TEST_F(LinuxAudioTest, TheMixerShowsWhoPlays) {
    server.start();
    const auto player = play({.pitch = 1000, .seconds = 8});
    waitForTone(1000);
    const std::string streams = server.control("list sink-inputs");
    EXPECT_NE(streams.find("application.name = \"Quiverly\""), std::string::npos) << streams;
    EXPECT_NE(streams.find("application.id = \"com.jostlix.bonko\""), std::string::npos) << streams;
    EXPECT_NE(streams.find("media.name = \"Slap\""), std::string::npos) << streams;
    EXPECT_NE(streams.find("Volume: front-left: 65536 / 100%"), std::string::npos) << streams;
}

TEST_F(LinuxAudioTest, EachClipPlaysOnTheDefaultDeviceOfItsMoment) {
    server.start();
    playToItsEnd(1000);
    server.control("load-module module-null-sink sink_name=other");
    server.control("set-default-sink other");
    const auto player = play({.pitch = 2000, .seconds = 8});
    waitUntil([&] { return server.streams() == 1; });

    // Each line: a number, the name; and: a number, the number of the device.
    const std::string devices = server.control("list short sinks");
    const std::string number = devices.substr(devices.find("\tother\t") - 1, 1);
    const std::string stream = server.control("list short sink-inputs");
    EXPECT_NE(stream.find('\t' + number + '\t'), std::string::npos) << devices << stream;
}

TEST_F(LinuxAudioTest, NothingWakesAgainAndAgainWhileNothingSounds) {
    server.start();
    playToItsEnd(1000);
    const auto switches = [] {
        for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task")) {
            std::ifstream status(thread.path() / "status");
            std::string word;
            while (status >> word && word != "quiverly-sound" && word != "Umask:") {
            }
            if (word != "quiverly-sound") continue;
            while (status >> word && word != "voluntary_ctxt_switches:") {
            }
            status >> word;
            return std::stol(word);
        }
        return -1L;
    };
    const long before = switches();
    ASSERT_GT(before, 0);
    server.listen(2.0);
    EXPECT_LE(switches() - before, 2); // a late word of the server, but no clock that ticks
}

TEST_F(LinuxAudioTest, WithoutAServerEverythingIsSilent) {
    for (int count = 0; count < 20; ++count) play({.pitch = 1000});
    server.start(); // one that starts later is found by the next clip
    playToItsEnd(2000);
    EXPECT_EQ(heard().pitches(), std::vector{2000});
}

TEST_F(LinuxAudioTest, WithoutADeviceEverythingIsSilent) {
    server.start();
    playToItsEnd(1000);
    server.control("unload-module module-null-sink");
    for (int count = 0; count < 20; ++count) play({.pitch = 1000});
    server.kill();
    server.start();
    playToItsEnd(2000);
    EXPECT_EQ(heard().pitches(), std::vector{2000});
}

TEST_F(LinuxAudioTest, AServerThatDiedAndCameBackPlaysTheNextClip) {
    server.start();
    const auto cutOff = play({.pitch = 1000, .seconds = 8});
    waitForTone(1000);
    server.kill();
    for (int count = 0; count < 20; ++count) play({.pitch = 1000});
    server.start();
    playToItsEnd(2000);
    EXPECT_EQ(heard().pitches(), std::vector{2000});
}

// The server stands still during all of play, cut-off, release: nothing here would return if it waited for it.
TEST_F(LinuxAudioTest, AFrozenServerHoldsNobodyUp) {
    server.start();
    auto player = play({.pitch = 500, .seconds = 8});
    waitForTone(500);
    server.freeze();
    for (int count = 0; count < 200; ++count) {
        player = play({.pitch = 1000, .seconds = 0.1});
        audio::setVolume(*player, 0.5F);
    }
    player.reset();
    server.thaw();
    waitUntil([&] { return server.streams() == 0; });
    startListening();
    playToItsEnd(2000);
    EXPECT_EQ(heard().pitches().back(), 2000);
}

TEST_F(LinuxAudioTest, AServerFrozenBeforeTheFirstClipHoldsNobodyUp) {
    server.start();
    server.freeze();
    for (int count = 0; count < 200; ++count) play({.pitch = 1000, .seconds = 0.1});
    server.thaw();
    playToItsEnd(2000);
    EXPECT_EQ(heard().pitches(), std::vector{2000});
}

TEST_F(LinuxAudioTest, AProgramEndsThoughTheServerIsFrozen) {
    server.start();
    const auto frozen = server.folder() / "frozen";
    const std::vector<std::string> command{QUIVERLY_PLAY_AND_END, clip({.pitch = 1000, .seconds = 8}), frozen};
    ChildProcess connected(command, server.folder() / "out", server.folder() / "errors");
    waitForTone(1000);
    server.freeze();
    std::ofstream(frozen) << "x";
    EXPECT_EQ(connected.wait(), 0);
    EXPECT_EQ(ChildProcess(command, server.folder() / "out", server.folder() / "errors").wait(), 0);
}

TEST_F(LinuxAudioTest, AClipThatFoundTheConnectionTooLateIsDropped) {
    server.start();
    server.freeze();
    const auto player = play({.pitch = 1000});
    const Playback youngest{.clip = nullptr, .volume = 1.0F};
    waitUntil([&] { return youngest.isStale(); });
    server.thaw();
    waitUntil([&] { return server.hasClient("Quiverly"); });
    listenToWhatFollows();
    playToItsEnd(2000);
    EXPECT_EQ(heard().pitches(), std::vector{2000});
}

TEST_F(LinuxAudioTest, AClipWhoseStreamCameTooLateIsDropped) {
    server.start();
    playToItsEnd(500);
    server.freeze();
    const auto player = play({.pitch = 1000});
    const Playback youngest{.clip = nullptr, .volume = 1.0F};
    waitUntil([&] { return youngest.isStale(); });
    server.thaw();
    listenToWhatFollows();
    playToItsEnd(2000);
    EXPECT_EQ(heard().pitches(), (std::vector{500, 2000}));
}

TEST_F(LinuxAudioTest, AShortFreezeOnlyDelaysTheClip) {
    server.start();
    playToItsEnd(500);
    server.freeze();
    const auto player = play({.pitch = 1000});
    server.thaw();
    waitForTone(1000);
}

} // namespace
} // namespace quiverly
