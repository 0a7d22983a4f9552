#include <chrono>
#include <memory>
#include <utility>
#include <vector>

#include "support/BuiltEngineTest.h"

namespace quiverly {
namespace {

using namespace std::chrono_literals;

// The check on an engine that is already listening and whose detector has seen its first sample.
class HardwareCheckTest : public BuiltEngineTest {
protected:
    HardwareCheckTest() { listen(); }

    void begin() {
        engine->beginHardwareCheck([this](double amplitude) { testSlaps.push_back(amplitude); });
    }

    // Begins, and lets the settling time pass.
    void beginSettled() {
        begin();
        platform.calendar.advance(2s);
    }

    // Hits without letting time pass, and handles the slap.
    void hitNow(double amplitude) {
        hit(amplitude);
        platform.mainQueue.drain();
    }

    // One sample, from eight reports with these axes in 1/65536 g.
    void feelRaw(std::int32_t x, std::int32_t y, std::int32_t z) {
        for (int count = 0; count < 8; ++count) {
            ASSERT_TRUE(platform.registry.deliver(rawSensorReport(x, y, z)));
        }
    }

    std::vector<double> testSlaps;
};

using Amplitudes = std::vector<double>;

// Beginning

TEST_F(HardwareCheckTest, BeginningTurnsSoundOffThenStarts) {
    engine->stop();
    engine->soundEnabled = true;
    engine->pack = SoundPack::halo;
    watchProperties();
    begin();
    EXPECT_EQ(announced, (Texts{"soundEnabled", "phase"}));
    EXPECT_FALSE(engine->soundEnabled);
    EXPECT_EQ(engine->pack, SoundPack::halo);
    EXPECT_TRUE(engine->isRunning());
}

TEST_F(HardwareCheckTest, BeginningWhileListeningDoesNotStartAgain) {
    platform.registry.onCall = [](const std::string& call) { FAIL() << call; };
    begin();
    EXPECT_TRUE(engine->isRunning());
    platform.registry.onCall = nullptr;
}

// The settling time

TEST_F(HardwareCheckTest, TheVeryFirstSampleInsideTheSettlingTimeIsDropped) {
    rebuild();
    begin();
    feelSample(1.0);
    platform.mainQueue.drain();
    platform.calendar.advance(2s);
    feelSample(1.0);
    platform.mainQueue.drain();
    EXPECT_EQ(engine->slapCount, 0);
    EXPECT_EQ(testSlaps, Amplitudes{});
}

TEST_F(HardwareCheckTest, ASlapHandledLessThanTwoSecondsAfterTheBeginningIsDroppedAndNotAnnounced) {
    begin();
    watchProperties();
    platform.calendar.advance(2s - 1ns);
    hitNow(0.5);
    EXPECT_EQ(engine->slapCount, 0);
    EXPECT_EQ(engine->lastAmplitude, 0.0);
    EXPECT_EQ(testSlaps, Amplitudes{});
    EXPECT_EQ(announced, Texts{});
}

TEST_F(HardwareCheckTest, ASlapHandledTwoSecondsAfterTheBeginningIsAccepted) {
    begin();
    platform.calendar.advance(2s);
    hitNow(0.5);
    EXPECT_EQ(engine->slapCount, 1);
    EXPECT_EQ(testSlaps, Amplitudes{0.5});
}

TEST_F(HardwareCheckTest, TheMomentAtWhichASlapIsHandledCountsNotThatOfItsDetection) {
    begin();
    hit(0.5);
    ASSERT_TRUE(platform.mainQueue.runTurn()); // detected
    platform.calendar.advance(2s);
    platform.mainQueue.drain();
    EXPECT_EQ(testSlaps, Amplitudes{0.5});

    platform.calendar.advance(1s);
    hit(0.25);
    ASSERT_TRUE(platform.mainQueue.runTurn()); // detected
    begin();
    platform.mainQueue.drain();
    EXPECT_EQ(testSlaps, Amplitudes{0.5});
}

TEST_F(HardwareCheckTest, AClockThatIsSetBackBeforeASecondBeginningDoesNotProlongTheSettlingTime) {
    begin();
    platform.calendar.advance(-1h);
    begin();
    platform.calendar.advance(2s);
    hitNow(0.5);
    EXPECT_EQ(testSlaps, Amplitudes{0.5});
}

TEST_F(HardwareCheckTest, EndingWithinTheTwoSecondsKeepsIgnoringOrdinarySlapsUntilTheyAreOver) {
    begin();
    platform.calendar.advance(1s);
    engine->endHardwareCheck();
    hitNow(0.5);
    EXPECT_EQ(engine->slapCount, 0);
    platform.calendar.advance(1s);
    hitNow(0.125); // no firmer slap is asked for any more
    EXPECT_EQ(engine->slapCount, 1);
}

// Which slaps are accepted, and what is done with them

TEST_F(HardwareCheckTest, AnAmplitudeOfLessThanPointOneEightIsDropped) {
    beginSettled();
    engine->threshold = 0.1;
    slap(11796.0 / 65536); // 0.17999
    EXPECT_EQ(engine->slapCount, 0);
    EXPECT_EQ(engine->lastAmplitude, 0.0);
    slap(11797.0 / 65536); // 0.18001
    EXPECT_EQ(engine->slapCount, 1);
    EXPECT_EQ(engine->lastAmplitude, 11797.0 / 65536);
}

// No hit straight up scores 0.18 to the bit, but the step between these two accelerations does.
TEST_F(HardwareCheckTest, AnAmplitudeOfExactlyPointOneEightIsAccepted) {
    begin();
    engine->threshold = 0.1;
    for (int count = 0; count < 100; ++count) feelRaw(30742, 0, 764); // until the baseline is near
    platform.mainQueue.drain();
    platform.calendar.advance(2s);
    feelRaw(41145, 0, 10836);
    platform.mainQueue.drain();
    EXPECT_EQ(testSlaps, Amplitudes{0.18});
}

TEST_F(HardwareCheckTest, AnAcceptedSlapPlaysThePreviewThoughSoundIsOffThenCallsTheHandler) {
    engine->pack = SoundPack::halo;
    engine->beginHardwareCheck([this](double amplitude) {
        testSlaps.push_back(amplitude);
        EXPECT_EQ(engine->slapCount, 1);
        EXPECT_EQ(engine->lastAmplitude, 0.25);
        EXPECT_EQ(played, Texts{"sexy/28.mp3"});
    });
    platform.calendar.advance(2s);
    slap(0.25);
    EXPECT_EQ(testSlaps, Amplitudes{0.25});
    EXPECT_EQ(platform.audio.sounding().at(0).volume, 0.87F);
    EXPECT_FALSE(engine->soundEnabled);
}

TEST_F(HardwareCheckTest, EveryFurtherAcceptedSlapCallsTheHandlerUntilTheCheckEnds) {
    beginSettled();
    slap(0.25);
    slap(0.5);
    engine->endHardwareCheck();
    slap(0.75);
    EXPECT_EQ(testSlaps, (Amplitudes{0.25, 0.5}));
    EXPECT_EQ(engine->slapCount, 3);
}

TEST_F(HardwareCheckTest, BeginningAgainReplacesTheHandlerAndSettlesAgain) {
    beginSettled();
    int others = 0;
    engine->beginHardwareCheck([&](double) { ++others; });
    slap(0.5);
    EXPECT_EQ(engine->slapCount, 0);
    platform.calendar.advance(1s);
    slap(0.5);
    EXPECT_EQ(others, 1);
    EXPECT_EQ(testSlaps, Amplitudes{});
}

// The detector's threshold

TEST_F(HardwareCheckTest, AThresholdOfPointOneTwoBecomesPointTwoTwoAndComesBackAtTheEnd) {
    beginSettled();
    expectDetectorThreshold(0.22);
    engine->endHardwareCheck();
    expectDetectorThreshold(0.12);
}

TEST_F(HardwareCheckTest, AThresholdOfPointThreeStaysThroughout) {
    engine->threshold = 0.3;
    beginSettled();
    expectDetectorThreshold(0.3);
    engine->endHardwareCheck();
    expectDetectorThreshold(0.3);
}

TEST_F(HardwareCheckTest, AThresholdAssignedDuringTheCheckCountsAtOnceAndTheEndPutsTheSavedOneBack) {
    beginSettled();
    engine->threshold = 0.4;
    expectDetectorThreshold(0.4);
    engine->endHardwareCheck();
    expectDetectorThreshold(0.12);
    EXPECT_EQ(engine->threshold, 0.4); // they disagree until the next assignment
    engine->threshold = 0.4;
    expectDetectorThreshold(0.4);
}

TEST_F(HardwareCheckTest, TheCheckGoesByTheEnginesThresholdAndItsEndPutsTheDetectorsBack) {
    beginSettled();
    engine->threshold = 0.4;
    engine->endHardwareCheck(); // the engine's is 0.4 now, the detector's 0.12
    beginSettled();
    expectDetectorThreshold(0.4);
    engine->endHardwareCheck();
    expectDetectorThreshold(0.12);

    engine->threshold = 0.4;
    begin();
    engine->threshold = 0.12;
    engine->endHardwareCheck(); // the engine's is 0.12 now, the detector's 0.4
    beginSettled();
    expectDetectorThreshold(0.22);
    engine->endHardwareCheck();
    expectDetectorThreshold(0.4);
}

TEST_F(HardwareCheckTest, BeginningTwiceSavesTheRaisedThresholdSoThatTheEndLeavesItRaised) {
    begin();
    beginSettled();
    engine->endHardwareCheck();
    expectDetectorThreshold(0.22);
    EXPECT_EQ(engine->threshold, 0.12);
}

TEST_F(HardwareCheckTest, AThresholdIsPutBackOnce) {
    begin();
    engine->endHardwareCheck();
    engine->threshold = 0.4;
    engine->endHardwareCheck();
    engine->stop();
    engine->start();
    platform.calendar.advance(2s);
    expectDetectorThreshold(0.4);
}

// The pack

TEST_F(HardwareCheckTest, AfterTheEndThePlayerIsBackOnTheEnginesPack) {
    engine->pack = SoundPack::halo;
    beginSettled();
    engine->endHardwareCheck();
    EXPECT_EQ(packThatAnswers(), "halo");
}

TEST_F(HardwareCheckTest, AfterAStopDuringTheCheckThePlayerIsStillOnSexy) {
    engine->pack = SoundPack::halo;
    beginSettled();
    engine->stop();
    engine->start();
    EXPECT_EQ(packThatAnswers(), "sexy");
}

TEST_F(HardwareCheckTest, AfterATestSlapAndAStopThePlayerIsStillOnSexy) {
    engine->pack = SoundPack::halo;
    beginSettled();
    slap(0.5);
    ASSERT_EQ(testSlaps, Amplitudes{0.5});
    engine->stop();
    engine->start();
    EXPECT_EQ(packThatAnswers(), "sexy");
}

// Ending

TEST_F(HardwareCheckTest, EndingStopsNothingAndAnnouncesNothing) {
    begin();
    engine->soundEnabled = true;
    watchProperties();
    engine->endHardwareCheck();
    EXPECT_EQ(announced, Texts{});
    EXPECT_TRUE(engine->isRunning());
    EXPECT_TRUE(sensorIsOpen());
    EXPECT_TRUE(engine->soundEnabled);
}

TEST_F(HardwareCheckTest, EndingWithoutACheckReloadsThePackAndLeavesTheThreshold) {
    engine->threshold = 0.4;
    engine->soundEnabled = true;
    addClip(SoundPack::sexy, "0.mp3");
    engine->endHardwareCheck();
    slap(0.5);
    EXPECT_EQ(takePlayed(), Texts{"sexy/0.mp3"});
    expectDetectorThreshold(0.4);
}

TEST_F(HardwareCheckTest, ACheckBegunWithoutTheSensorStaysOnInErrorUntilItEnds) {
    engine->stop();
    removeSensor();
    begin();
    EXPECT_EQ(engine->phase.get().kind, Kind::error);
    EXPECT_EQ(openedPages.size(), 1U);

    connectSensor();
    engine->start();
    platform.calendar.advance(2s);
    slap(0.5);
    EXPECT_EQ(testSlaps, Amplitudes{0.5});
    engine->stop();
    removeSensor();
    begin();
    engine->endHardwareCheck();
    EXPECT_EQ(engine->phase.get().kind, Kind::error);

    connectSensor();
    engine->start();
    platform.calendar.advance(2s);
    expectDetectorThreshold(0.12);
    EXPECT_EQ(testSlaps, Amplitudes{0.5});
}

TEST_F(HardwareCheckTest, ACheckBegunWithoutTheSensorStaysOnInErrorUntilStop) {
    engine->stop();
    removeSensor();
    begin();
    engine->stop();
    EXPECT_EQ(engine->phase.get().kind, Kind::idle);

    connectSensor();
    engine->start();
    platform.calendar.advance(2s);
    expectDetectorThreshold(0.12);
    EXPECT_EQ(testSlaps, Amplitudes{});
}

// The handler

TEST_F(HardwareCheckTest, TheHandlerMayEndTheCheckFromInsideItsOwnCall) {
    auto held = std::make_shared<int>(1);
    const std::weak_ptr<int> handlerLives = held;
    engine->beginHardwareCheck([&, held = std::move(held)](double amplitude) {
        const auto& lives = handlerLives; // what is read after the end must not stand in the handler
        testSlaps.push_back(amplitude);
        engine->endHardwareCheck();
        EXPECT_FALSE(lives.expired());
    });
    platform.calendar.advance(2s);
    slap(0.5);
    EXPECT_TRUE(handlerLives.expired());
    slap(0.75);
    EXPECT_EQ(testSlaps, Amplitudes{0.5});
    EXPECT_EQ(engine->slapCount, 2);
}

TEST_F(HardwareCheckTest, TheHandlerMayBeginAnotherCheckFromInsideItsOwnCall) {
    engine->beginHardwareCheck([this](double) { begin(); });
    platform.calendar.advance(2s);
    slap(0.5);
    platform.calendar.advance(2s);
    slap(0.75);
    EXPECT_EQ(testSlaps, Amplitudes{0.75});
}

TEST_F(HardwareCheckTest, TheHandlerMayDestroyTheEngineFromInsideItsOwnCall) {
    auto held = std::make_shared<int>(1);
    const std::weak_ptr<int> handlerLives = held;
    engine->beginHardwareCheck([&, held = std::move(held)](double amplitude) {
        const auto& lives = handlerLives; // what is read after the end must not stand in the handler
        testSlaps.push_back(amplitude);
        engine.reset();
        EXPECT_FALSE(lives.expired());
    });
    platform.calendar.advance(2s);
    slap(0.5);
    EXPECT_EQ(testSlaps, Amplitudes{0.5});
    EXPECT_TRUE(handlerLives.expired());
    EXPECT_FALSE(platform.registry.deviceIsOpen());
}

} // namespace
} // namespace quiverly
