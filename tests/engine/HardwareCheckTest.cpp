#include <chrono>
#include <vector>

#include "support/BuiltEngineTest.h"

namespace quiverly {
namespace {

using namespace std::chrono_literals;

class HardwareCheckTest : public BuiltEngineTest {
protected:
    void begin() {
        engine->beginHardwareCheck([this](double amplitude) { testSlaps.push_back(amplitude); });
    }

    // Begins, and lets the settling time pass.
    void beginSettled() {
        begin();
        platform.calendar.advance(2s);
    }

    std::vector<double> testSlaps;
};

using Amplitudes = std::vector<double>;

TEST_F(HardwareCheckTest, BeginningTurnsSoundOffRaisesTheThresholdLoadsSexyAndStarts) {
    engine->soundEnabled = true;
    engine->pack = SoundPack::halo;
    begin();
    EXPECT_FALSE(engine->soundEnabled);
    EXPECT_TRUE(Inspector::onboardingMode(*engine));
    EXPECT_EQ(Inspector::ignoreSlapsUntil(*engine), platform.calendar.now + 2s);
    EXPECT_EQ(Inspector::savedThreshold(*engine), 0.12);
    EXPECT_EQ(detector().threshold, 0.22);
    EXPECT_EQ(loadedPack(), SoundPack::sexy);
    EXPECT_EQ(engine->pack, SoundPack::halo);
    EXPECT_TRUE(engine->isRunning());
}

TEST_F(HardwareCheckTest, SoundGoesOffBeforeTheCheckIsOnAndAllIsReadyBeforeTheStart) {
    watchProperties();
    const auto subscription = engine->objectWillChange.subscribe([&] {
        const bool starting = announced.back() == "phase";
        EXPECT_EQ(Inspector::onboardingMode(*engine), starting);
        EXPECT_EQ(detector().threshold, starting ? 0.22 : 0.12);
        EXPECT_EQ(loadedPack(), starting ? SoundPack::sexy : SoundPack::halo);
    });
    soundPlayer().load(SoundPack::halo);
    platform.registry.onCall = [&](const std::string&) { EXPECT_EQ(detector().threshold, 0.22); };
    begin();
    platform.registry.onCall = nullptr;
    EXPECT_EQ(announced, (Texts{"soundEnabled", "phase"}));
}

TEST_F(HardwareCheckTest, TheVeryFirstSampleInsideTheSettlingTimeIsDropped) {
    begin();
    feelSample(1.0);
    platform.mainQueue.drain();
    EXPECT_EQ(Inspector::lastFire(detector()), platform.calendar.now); // the detector has fired
    EXPECT_EQ(engine->slapCount, 0);
    EXPECT_EQ(testSlaps, Amplitudes{});
}

TEST_F(HardwareCheckTest, BeginningWhileListeningDoesNotStartAgain) {
    engine->start();
    platform.registry.onCall = [](const std::string& call) { FAIL() << call; };
    begin();
    EXPECT_TRUE(engine->isRunning());
    platform.registry.onCall = nullptr;
}

TEST_F(HardwareCheckTest, ASlapHandledLessThanTwoSecondsAfterTheBeginningIsDroppedAndOneAtTwoSecondsIsNot) {
    begin();
    platform.calendar.advance(2s - 1ns);
    slap(1.0);
    EXPECT_EQ(engine->slapCount, 0);
    EXPECT_EQ(testSlaps, Amplitudes{});

    platform.calendar.advance(1ns);
    slap(1.0);
    EXPECT_EQ(engine->slapCount, 1);
    EXPECT_EQ(testSlaps, Amplitudes{1.0});
}

TEST_F(HardwareCheckTest, AnAmplitudeOfExactlyPointOneEightIsAcceptedAndPointOneSevenNineNineDropped) {
    beginSettled();
    slap(0.1799);
    EXPECT_EQ(engine->slapCount, 0);
    EXPECT_EQ(engine->lastAmplitude, 0.0);
    slap(0.18);
    EXPECT_EQ(engine->slapCount, 1);
    EXPECT_EQ(engine->lastAmplitude, 0.18);
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
    slap(0.3);
    slap(0.4);
    engine->endHardwareCheck();
    slap(0.5);
    EXPECT_EQ(testSlaps, (Amplitudes{0.3, 0.4}));
    EXPECT_EQ(engine->slapCount, 3);
}

TEST_F(HardwareCheckTest, AThresholdOfPointOneTwoBecomesPointTwoTwoAndComesBackAtTheEnd) {
    begin();
    EXPECT_EQ(detector().threshold, 0.22);
    engine->endHardwareCheck();
    EXPECT_EQ(detector().threshold, 0.12);
    EXPECT_EQ(Inspector::savedThreshold(*engine), std::nullopt);
}

TEST_F(HardwareCheckTest, AThresholdOfPointThreeStaysThroughout) {
    engine->threshold = 0.3;
    begin();
    EXPECT_EQ(detector().threshold, 0.3);
    engine->endHardwareCheck();
    EXPECT_EQ(detector().threshold, 0.3);
}

TEST_F(HardwareCheckTest, AThresholdAssignedDuringTheCheckCountsAtOnceAndTheEndPutsTheSavedOneBack) {
    begin();
    engine->threshold = 0.15;
    EXPECT_EQ(detector().threshold, 0.15);
    engine->endHardwareCheck();
    EXPECT_EQ(detector().threshold, 0.12);
    EXPECT_EQ(engine->threshold, 0.15); // they disagree until the next assignment
    engine->threshold = 0.15;
    EXPECT_EQ(detector().threshold, 0.15);
}

TEST_F(HardwareCheckTest, TheDetectorsThresholdIsSavedNotTheEngines) {
    detector().threshold = 0.05;
    begin();
    engine->endHardwareCheck();
    EXPECT_EQ(detector().threshold, 0.05);
}

TEST_F(HardwareCheckTest, BeginningTwiceSavesTheRaisedThresholdSoThatTheEndLeavesItRaised) {
    begin();
    begin();
    EXPECT_EQ(Inspector::savedThreshold(*engine), 0.22);
    engine->endHardwareCheck();
    EXPECT_EQ(detector().threshold, 0.22);
    EXPECT_EQ(engine->threshold, 0.12);
}

TEST_F(HardwareCheckTest, BeginningAgainReplacesTheHandlerAndSettlesAgain) {
    beginSettled();
    int others = 0;
    engine->beginHardwareCheck([&](double) { ++others; });
    slap(0.5);
    EXPECT_EQ(engine->slapCount, 0);
    platform.calendar.advance(2s);
    slap(0.5);
    EXPECT_EQ(others, 1);
    EXPECT_EQ(testSlaps, Amplitudes{});
}

TEST_F(HardwareCheckTest, EndingWithinTheTwoSecondsKeepsDroppingOrdinarySlapsUntilTheyHavePassed) {
    begin();
    platform.calendar.advance(1s);
    engine->endHardwareCheck();
    slap(0.5);
    EXPECT_EQ(engine->slapCount, 0);
    platform.calendar.advance(1s);
    slap(0.1); // no firmer slap is asked for any more
    EXPECT_EQ(engine->slapCount, 1);
}

TEST_F(HardwareCheckTest, ACheckBegunWithoutTheSensorStaysOnInErrorUntilItEnds) {
    removeSensor();
    begin();
    EXPECT_EQ(engine->phase.get().kind, Kind::error);
    EXPECT_EQ(openedPages.size(), 1U);
    EXPECT_TRUE(Inspector::onboardingMode(*engine));
    EXPECT_EQ(detector().threshold, 0.22);

    engine->endHardwareCheck();
    EXPECT_FALSE(Inspector::onboardingMode(*engine));
    EXPECT_EQ(detector().threshold, 0.12);
    EXPECT_EQ(engine->phase.get().kind, Kind::error);
}

TEST_F(HardwareCheckTest, ACheckBegunWithoutTheSensorStaysOnInErrorUntilStop) {
    removeSensor();
    begin();
    engine->stop();
    EXPECT_FALSE(Inspector::onboardingMode(*engine));
    EXPECT_EQ(detector().threshold, 0.12);
    EXPECT_EQ(engine->phase.get().kind, Kind::idle);
}

TEST_F(HardwareCheckTest, AfterTheEndThePlayerIsBackOnTheEnginesPack) {
    engine->pack = SoundPack::halo;
    begin();
    EXPECT_EQ(loadedPack(), SoundPack::sexy);
    engine->endHardwareCheck();
    EXPECT_EQ(loadedPack(), SoundPack::halo);
    EXPECT_EQ(loadedClips(), 2U);
}

TEST_F(HardwareCheckTest, AfterAStopDuringTheCheckThePlayerIsStillOnSexy) {
    engine->pack = SoundPack::halo;
    beginSettled();
    slap(0.5);
    engine->stop();
    EXPECT_EQ(loadedPack(), SoundPack::sexy);
}

TEST_F(HardwareCheckTest, EndingStopsNothingAndTouchesNeitherPhaseNorSettlingTimeNorSound) {
    begin();
    const auto settledAt = Inspector::ignoreSlapsUntil(*engine);
    engine->soundEnabled = true;
    const auto subscription = engine->objectWillChange.subscribe([] { FAIL(); });
    engine->endHardwareCheck();
    EXPECT_TRUE(engine->isRunning());
    EXPECT_TRUE(platform.registry.deviceIsOpen());
    EXPECT_EQ(Inspector::ignoreSlapsUntil(*engine), settledAt);
    EXPECT_TRUE(engine->soundEnabled);
}

TEST_F(HardwareCheckTest, EndingWithoutACheckReloadsThePackAndLeavesTheThreshold) {
    detector().threshold = 0.5;
    addClip(SoundPack::sexy, "3.mp3");
    engine->endHardwareCheck();
    EXPECT_EQ(loadedClips(), 4U);
    EXPECT_EQ(detector().threshold, 0.5);
}

TEST_F(HardwareCheckTest, TheHandlerMayEndTheCheckFromInsideItsOwnCall) {
    engine->beginHardwareCheck([this, mark = std::vector<int>(100, 7)](double amplitude) {
        engine->endHardwareCheck();
        testSlaps.push_back(amplitude);
        EXPECT_EQ(mark, std::vector<int>(100, 7)); // the handler outlives its own end
    });
    platform.calendar.advance(2s);
    slap(0.5);
    slap(0.6);
    EXPECT_EQ(testSlaps, Amplitudes{0.5});
    EXPECT_EQ(engine->slapCount, 2);
}

TEST_F(HardwareCheckTest, TheHandlerMayBeginAnotherCheckFromInsideItsOwnCall) {
    engine->beginHardwareCheck([this](double) { begin(); });
    platform.calendar.advance(2s);
    slap(0.5);
    platform.calendar.advance(2s);
    slap(0.6);
    EXPECT_EQ(testSlaps, Amplitudes{0.6});
}

TEST_F(HardwareCheckTest, TheHandlerMayDestroyTheEngineFromInsideItsOwnCall) {
    engine->beginHardwareCheck([this, mark = std::vector<int>(100, 7)](double amplitude) {
        engine.reset();
        testSlaps.push_back(amplitude);
        EXPECT_EQ(mark, std::vector<int>(100, 7));
    });
    platform.calendar.advance(2s);
    slap(0.5);
    EXPECT_EQ(testSlaps, Amplitudes{0.5});
    EXPECT_FALSE(platform.registry.deviceIsOpen());
}

} // namespace
} // namespace quiverly
