#include <chrono>
#include <string>
#include <vector>

#include "support/BuiltEngineTest.h"

namespace quiverly {
namespace {

const std::string accessPage = "x-apple.systempreferences:com.apple.preference.security?Privacy_ListenEvent";

class BonkoEngineRunControlTest : public BuiltEngineTest {
protected:
    const Phase idle{Kind::idle};
    const Phase listening{Kind::listening};
    const Phase missing{Kind::error, "Accelerometer device missing on this Mac."};
    const Phase notPermitted{
        Kind::error, "Need Input Monitoring permission (System Settings → Privacy & Security). Code -536870174."};

    void refuseSensor() { platform.registry.services.at(1).openResult = hid::notPermitted; }
    bool readerIsRunning() { return Inspector::reader(*engine).isRunning(); }
};

// The transitions

TEST_F(BonkoEngineRunControlTest, FromIdleASuccessfulStartLeadsToListening) {
    engine->start();
    EXPECT_EQ(engine->phase.get(), listening);
    EXPECT_TRUE(engine->isRunning());
    EXPECT_TRUE(readerIsRunning());
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

TEST_F(BonkoEngineRunControlTest, StartWhileListeningChangesNothingAndAnnouncesNothing) {
    engine->start();
    removeSensor();
    const auto subscription = engine->objectWillChange.subscribe([] { FAIL(); });
    platform.registry.onCall = [](const std::string& call) { FAIL() << call; };
    engine->start();
    EXPECT_EQ(engine->phase.get(), listening);
    platform.registry.onCall = nullptr;
}

TEST_F(BonkoEngineRunControlTest, StopWhileListeningLeadsToIdle) {
    engine->start();
    engine->stop();
    EXPECT_EQ(engine->phase.get(), idle);
    EXPECT_FALSE(readerIsRunning());
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

TEST_F(BonkoEngineRunControlTest, WhereNoPageCanBeNamedTheFailureIsStillReported) {
    platform.workspace.sensorAccessPage.reset();
    removeSensor();
    engine->start();
    EXPECT_EQ(engine->phase.get(), missing);
    EXPECT_EQ(openedPages, Texts{});
}

TEST_F(BonkoEngineRunControlTest, WithoutAThreadToGiveTheAccelerometerIsUnavailable) {
    platform.threads.exhausted = true;
    engine->start();
    EXPECT_EQ(engine->phase.get(), (Phase{Kind::error, "Accelerometer unavailable"}));
    EXPECT_EQ(openedPages, Texts{accessPage});
    EXPECT_FALSE(platform.registry.deviceIsOpen());
    EXPECT_EQ(platform.registry.lentObjects(), 0);
}

TEST_F(BonkoEngineRunControlTest, StartKeepsCountsSoundAndTheCheck) {
    slap(0.3);
    removeSensor();
    engine->beginHardwareCheck([](double) {});
    const auto settledAt = Inspector::ignoreSlapsUntil(*engine);
    engine->soundEnabled = true;
    connectSensor();
    engine->start();
    EXPECT_EQ(engine->slapCount, 1);
    EXPECT_EQ(engine->lastAmplitude, 0.3);
    EXPECT_TRUE(engine->soundEnabled);
    EXPECT_TRUE(Inspector::onboardingMode(*engine));
    EXPECT_EQ(Inspector::savedThreshold(*engine), 0.12);
    EXPECT_EQ(Inspector::ignoreSlapsUntil(*engine), settledAt);
}

TEST_F(BonkoEngineRunControlTest, StopKeepsCountsSoundAndTheSettlingTime) {
    engine->start();
    slap(0.3);
    engine->soundEnabled = true;
    const auto settledAt = platform.calendar.now + std::chrono::hours(1);
    Inspector::ignoreSlapsUntil(*engine) = settledAt;
    engine->stop();
    EXPECT_EQ(engine->slapCount, 1);
    EXPECT_EQ(engine->lastAmplitude, 0.3);
    EXPECT_TRUE(engine->soundEnabled);
    EXPECT_EQ(Inspector::ignoreSlapsUntil(*engine), settledAt);
}

TEST_F(BonkoEngineRunControlTest, StopDuringTheCheckEndsItAndRestoresTheThresholdButLeavesItsPackAndSoundOff) {
    engine->pack = SoundPack::halo;
    engine->soundEnabled = true;
    int testSlaps = 0;
    engine->beginHardwareCheck([&](double) { ++testSlaps; });
    engine->stop();

    EXPECT_FALSE(Inspector::onboardingMode(*engine));
    EXPECT_EQ(Inspector::savedThreshold(*engine), std::nullopt);
    EXPECT_EQ(detector().threshold, 0.12);
    EXPECT_EQ(loadedPack(), SoundPack::sexy);
    EXPECT_FALSE(engine->soundEnabled);

    platform.calendar.advance(std::chrono::seconds(2));
    slap(0.5);
    EXPECT_EQ(testSlaps, 0);
    EXPECT_EQ(engine->slapCount, 1);
}

TEST_F(BonkoEngineRunControlTest, ThePhaseIsIdleBeforeTheCheckIsCleared) {
    engine->beginHardwareCheck([](double) {});
    bool checkAtAnnouncement = false;
    const auto subscription = engine->objectWillChange.subscribe(
        [&] { checkAtAnnouncement = Inspector::onboardingMode(*engine) && !readerIsRunning(); });
    engine->stop();
    EXPECT_TRUE(checkAtAnnouncement);
}

} // namespace
} // namespace quiverly
