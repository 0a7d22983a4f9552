#include <chrono>
#include <string>
#include <vector>

#include "support/BuiltEngineTest.h"

namespace quiverly {
namespace {

using namespace std::chrono_literals;

const std::string accessPage = "x-apple.systempreferences:com.apple.preference.security?Privacy_ListenEvent";

class BonkoEngineRunControlTest : public BuiltEngineTest {
protected:
    const Phase idle{Kind::idle};
    const Phase listening{Kind::listening};
    const Phase missing{Kind::error, "Accelerometer device missing on this Mac."};
    const Phase notPermitted{
        Kind::error, "Need Input Monitoring permission (System Settings → Privacy & Security). Code -536870174."};

    void refuseSensor() { platform.registry.services.at(1).openResult = hid::notPermitted; }
};

// The transitions

TEST_F(BonkoEngineRunControlTest, FromIdleASuccessfulStartLeadsToListening) {
    engine->start();
    EXPECT_EQ(engine->phase.get(), listening);
    EXPECT_TRUE(engine->isRunning());
    EXPECT_TRUE(sensorIsOpen());
    EXPECT_EQ(openedPages, Texts{});
}

TEST_F(BonkoEngineRunControlTest, FromIdleAFailedStartLeadsToErrorAndOpensThePage) {
    removeSensor();
    engine->start();
    EXPECT_EQ(engine->phase.get(), missing);
    EXPECT_FALSE(engine->isRunning());
    EXPECT_EQ(openedPages, Texts{accessPage});
}

TEST_F(BonkoEngineRunControlTest, FromErrorASuccessfulStartLeadsToListening) {
    removeSensor();
    engine->start();
    connectSensor();
    engine->start();
    EXPECT_EQ(engine->phase.get(), listening);
    EXPECT_EQ(openedPages.size(), 1U);
}

TEST_F(BonkoEngineRunControlTest, FromErrorAFailedStartLeadsToTheNewErrorAndOpensThePageAgain) {
    removeSensor();
    engine->start();
    connectSensor();
    refuseSensor();
    engine->start();
    EXPECT_EQ(engine->phase.get(), notPermitted);
    EXPECT_EQ(openedPages, (Texts{accessPage, accessPage}));
}

TEST_F(BonkoEngineRunControlTest, AFailureForTheSameReasonIsAnnouncedAgain) {
    removeSensor();
    watchProperties();
    engine->start();
    engine->start();
    EXPECT_EQ(announced, (Texts{"phase", "phase"}));
}

TEST_F(BonkoEngineRunControlTest, StartWhileListeningChangesNothingAndAnnouncesNothing) {
    engine->start();
    removeSensor();
    watchProperties();
    platform.registry.onCall = [](const std::string& call) { FAIL() << call; };
    engine->start();
    EXPECT_EQ(engine->phase.get(), listening);
    EXPECT_EQ(announced, Texts{});
    platform.registry.onCall = nullptr;
}

TEST_F(BonkoEngineRunControlTest, StopWhileListeningLeadsToIdle) {
    engine->start();
    engine->stop();
    EXPECT_EQ(engine->phase.get(), idle);
    EXPECT_FALSE(sensorIsOpen());
}

TEST_F(BonkoEngineRunControlTest, StopInErrorLeadsToIdle) {
    removeSensor();
    engine->start();
    engine->stop();
    EXPECT_EQ(engine->phase.get(), idle);
}

TEST_F(BonkoEngineRunControlTest, StopWhileIdleStaysIdleAndIsAnnouncedAllTheSame) {
    watchProperties();
    engine->stop();
    EXPECT_EQ(engine->phase.get(), idle);
    EXPECT_EQ(announced, Texts{"phase"});
}

// The details

TEST_F(BonkoEngineRunControlTest, ThePhaseIsWrittenBeforeThePageIsOpened) {
    removeSensor();
    std::vector<Phase> phases;
    platform.workspace.onOpen = [&](const std::string&) { phases.push_back(engine->phase); };
    engine->start();
    EXPECT_EQ(phases, std::vector<Phase>{missing});
}

TEST_F(BonkoEngineRunControlTest, TheReaderIsStoppedBeforeThePhaseIsWritten) {
    engine->start();
    bool open = true;
    const auto subscription = engine->phase.willChange.subscribe([&] { open = sensorIsOpen(); });
    engine->stop();
    EXPECT_FALSE(open);
}

TEST_F(BonkoEngineRunControlTest, WhereNoPageCanBeNamedTheFailureIsStillReported) {
    platform.workspace.sensorAccessPage.reset();
    removeSensor();
    engine->start();
    EXPECT_EQ(engine->phase.get(), missing);
    EXPECT_EQ(openedPages, Texts{});
}

TEST_F(BonkoEngineRunControlTest, WithoutAThreadToSpareTheAccelerometerIsUnavailable) {
    platform.threads.exhausted = true;
    engine->start();
    EXPECT_EQ(engine->phase.get(), (Phase{Kind::error, "Accelerometer unavailable"}));
    EXPECT_EQ(openedPages, Texts{accessPage});
    EXPECT_FALSE(platform.registry.deviceIsOpen());
    EXPECT_EQ(platform.registry.lentObjects(), 0);
}

TEST_F(BonkoEngineRunControlTest, StartKeepsCountsSoundAndTheCheckWithItsSettlingTime) {
    listen();
    slap(0.25);
    engine->stop();
    removeSensor();
    int testSlaps = 0;
    engine->beginHardwareCheck([&](double) { ++testSlaps; });
    engine->soundEnabled = true;
    connectSensor();
    platform.calendar.advance(1s);
    engine->start();
    EXPECT_EQ(engine->slapCount, 1);
    EXPECT_EQ(engine->lastAmplitude, 0.25);
    EXPECT_TRUE(engine->soundEnabled);

    hit(0.5);
    platform.mainQueue.drain();
    EXPECT_EQ(testSlaps, 0); // still settling
    slap(0.5);               // two seconds after the beginning
    EXPECT_EQ(testSlaps, 1);
    engine->endHardwareCheck();
    expectDetectorThreshold(0.12);
}

TEST_F(BonkoEngineRunControlTest, StopKeepsCountsSoundAndTheSettlingTime) {
    listen();
    slap(0.25);
    engine->beginHardwareCheck([](double) {});
    engine->soundEnabled = true;
    engine->stop();
    EXPECT_EQ(engine->slapCount, 1);
    EXPECT_EQ(engine->lastAmplitude, 0.25);
    EXPECT_TRUE(engine->soundEnabled);

    engine->start();
    EXPECT_FALSE(counts(0.5)); // a second after the check began
    EXPECT_TRUE(counts(0.5));  // two seconds after
}

TEST_F(BonkoEngineRunControlTest, StopDuringTheCheckEndsItAndRestoresTheThresholdButLeavesItsPackAndSoundOff) {
    engine->pack = SoundPack::halo;
    engine->soundEnabled = true;
    listen();
    int testSlaps = 0;
    engine->beginHardwareCheck([&](double) { ++testSlaps; });
    engine->stop();
    EXPECT_FALSE(engine->soundEnabled);

    engine->start();
    platform.calendar.advance(2s);
    expectDetectorThreshold(0.12);
    EXPECT_EQ(packThatAnswers(), "sexy");
    EXPECT_EQ(testSlaps, 0);
}

} // namespace
} // namespace quiverly
