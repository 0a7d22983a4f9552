#include <chrono>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/BuiltEngineTest.h"
#include "support/Sample.h"

namespace quiverly {
namespace {

using namespace std::chrono_literals;

static_assert(!std::is_polymorphic_v<BonkoEngine>);
static_assert(!std::is_copy_constructible_v<BonkoEngine> && !std::is_move_constructible_v<BonkoEngine>);

// What only the engine may write cannot be assigned.
template<class Property, class Value>
concept AssignableFrom = std::is_assignable_v<Property&, Value>;
static_assert(!AssignableFrom<decltype(BonkoEngine::phase), BonkoEngine::Phase>);
static_assert(!AssignableFrom<decltype(BonkoEngine::slapCount), std::int64_t>);
static_assert(!AssignableFrom<decltype(BonkoEngine::lastAmplitude), double>);
static_assert(AssignableFrom<decltype(BonkoEngine::soundEnabled), bool>);
static_assert(AssignableFrom<decltype(BonkoEngine::pack), SoundPack>);
static_assert(AssignableFrom<decltype(BonkoEngine::threshold), double>);

class BonkoEngineTest : public BuiltEngineTest {};

TEST_F(BonkoEngineTest, AFreshEnginePublishesTheDefaults) {
    EXPECT_EQ(engine->phase.get(), Phase{Kind::idle});
    EXPECT_EQ(engine->slapCount, 0);
    EXPECT_EQ(engine->lastAmplitude, 0.0);
    EXPECT_EQ(engine->soundEnabled, false);
    EXPECT_EQ(engine->pack, SoundPack::sexy);
    EXPECT_EQ(engine->threshold, 0.12);
}

TEST_F(BonkoEngineTest, BuildingDoesNotTouchTheSensor) {
    platform.registry.onCall = [](const std::string& call) { FAIL() << call; };
    rebuild();
    EXPECT_EQ(platform.threads.live(), 0U);
    platform.registry.onCall = nullptr;
}

TEST_F(BonkoEngineTest, BuildingLoadsThePackAndGivesTheDetectorItsThreshold) {
    listen();
    EXPECT_EQ(packThatAnswers(), "sexy");
    expectDetectorThreshold(0.12);
}

TEST_F(BonkoEngineTest, ErrorsAreEqualWhenTheirMessagesAre) {
    EXPECT_EQ((Phase{Kind::error, "a"}), (Phase{Kind::error, "a"}));
    EXPECT_NE((Phase{Kind::error, "a"}), (Phase{Kind::error, "b"}));
    EXPECT_NE((Phase{Kind::idle}), (Phase{Kind::listening}));
}

// The road from a sample to a slap

TEST_F(BonkoEngineTest, EverySampleIsOneJobOnTheMainThreadInOrderOfArrival) {
    std::vector<double> seen;
    engine->onSample = [&](double, double, double z) { seen.push_back(z); };
    engine->start();
    feelSample(1.0);
    platform.mainQueue.post([&] { seen.push_back(0.0); });
    feelSample(1.5);
    EXPECT_EQ(seen, std::vector<double>{}); // nothing was done on the sensor thread
    EXPECT_TRUE(platform.mainQueue.runTurn());
    EXPECT_EQ(seen, (std::vector<double>{1.0, 0.0, 1.5}));
}

TEST_F(BonkoEngineTest, TheDetectorSeesTheSamplesInOrderOfArrival) {
    listen();
    platform.calendar.advance(1s);
    for (const double magnitude : {1.25, 2.0, 4.0}) feelSample(magnitude);
    platform.mainQueue.drain();
    EXPECT_EQ(engine->slapCount, 1);
    EXPECT_EQ(engine->lastAmplitude, 0.25);
}

TEST_F(BonkoEngineTest, TheWatcherIsToldEachSampleOnTheMainThreadBeforeItsSlapIsHandled) {
    std::vector<Sample> samples;
    engine->onSample = [&](double x, double y, double z) {
        samples.push_back({x, y, z});
        EXPECT_EQ(engine->slapCount, 0);
    };
    engine->start();
    for (int count = 0; count < 8; ++count) platform.registry.deliver(sensorReport(0.25, -0.5, 2));
    EXPECT_EQ(samples, std::vector<Sample>{});
    platform.mainQueue.drain();
    EXPECT_EQ(samples, (std::vector<Sample>{{0.25, -0.5, 2}}));
    EXPECT_EQ(engine->slapCount, 1);
}

TEST_F(BonkoEngineTest, TheWatcherOfSamplesMayDestroyTheEngine) {
    auto held = std::make_shared<int>(1);
    const std::weak_ptr<int> watcherLives = held;
    engine->onSample = [&, held = std::move(held)](double, double, double) {
        const auto& lives = watcherLives;
        engine.reset();
        EXPECT_FALSE(lives.expired());
    };
    engine->start();
    feelSample(1.0);
    platform.mainQueue.drain();
    EXPECT_EQ(engine, std::nullopt);
    EXPECT_TRUE(watcherLives.expired());
}

TEST_F(BonkoEngineTest, ASlapIsHandledInALaterTurnAfterTheSamplesAlreadyQueued) {
    engine->start();
    feelSample(1.0); // the first sample of all is a slap
    feelSample(1.0);
    ASSERT_TRUE(platform.mainQueue.runTurn());
    EXPECT_EQ(engine->slapCount, 0);
    ASSERT_TRUE(platform.mainQueue.runTurn());
    EXPECT_EQ(engine->slapCount, 1);
    EXPECT_FALSE(platform.mainQueue.runTurn());
}

TEST_F(BonkoEngineTest, TheFirstSampleOfADetectorIsASlapAtFullVolumeAndALaterStartDoesNotRepeatIt) {
    engine->soundEnabled = true;
    engine->start();
    feelSample(1.0);
    platform.mainQueue.drain();
    EXPECT_EQ(engine->slapCount, 1);
    EXPECT_EQ(engine->lastAmplitude, 1.0);
    ASSERT_EQ(platform.audio.sounding().size(), 1U);
    EXPECT_EQ(platform.audio.sounding()[0].volume, 1.0F);

    engine->stop();
    platform.calendar.advance(10s);
    engine->start();
    feelSample(1.0);
    platform.mainQueue.drain();
    EXPECT_EQ(engine->slapCount, 1);
}

// Which slaps are accepted, and what is done with them

TEST_F(BonkoEngineTest, WithSoundOffASlapIsCountedAndShownAndPlayedMuted) {
    listen();
    for (int count = 0; count < 5; ++count) slap(0.25);
    EXPECT_EQ(engine->slapCount, 5);
    EXPECT_EQ(engine->lastAmplitude, 0.25);
    EXPECT_EQ(takePlayed(), Texts{});

    engine->soundEnabled = true;
    slap(0.25);
    EXPECT_EQ(takePlayed(), Texts{"sexy/1.mp3"}); // no muted slap escalates
}

TEST_F(BonkoEngineTest, WithSoundOnASlapIsAnsweredByAClipOfThePack) {
    engine->soundEnabled = true;
    listen();
    slap(0.25);
    EXPECT_EQ(takePlayed(), Texts{"sexy/1.mp3"});
    EXPECT_EQ(platform.audio.sounding().at(0).volume, 0.75F);
}

TEST_F(BonkoEngineTest, OutsideTheCheckTheEngineAsksForNoLeastAmplitude) {
    engine->threshold = 0.001;
    listen();
    slap(1.0 / 512);
    EXPECT_EQ(engine->slapCount, 1);
    EXPECT_EQ(engine->lastAmplitude, 1.0 / 512);
}

TEST_F(BonkoEngineTest, AnAcceptedSlapIsAnnouncedAsCountThenAmplitudeBeforeItIsPlayed) {
    engine->soundEnabled = true;
    listen();
    watchProperties();
    const auto subscription = engine->objectWillChange.subscribe([&] { EXPECT_TRUE(played.empty()); });
    slap(0.25);
    EXPECT_EQ(announced, (Texts{"slapCount", "lastAmplitude"}));
    EXPECT_EQ(takePlayed(), Texts{"sexy/1.mp3"});
}

TEST_F(BonkoEngineTest, ASlapAsHardAsTheLastIsAnnouncedToo) {
    listen();
    slap(0.25);
    watchProperties();
    slap(0.25);
    EXPECT_EQ(announced, (Texts{"slapCount", "lastAmplitude"}));
}

TEST_F(BonkoEngineTest, StopFollowedByStartKeepsCountAndAmplitude) {
    listen();
    slap(0.25);
    engine->stop();
    engine->start();
    EXPECT_EQ(engine->slapCount, 1);
    EXPECT_EQ(engine->lastAmplitude, 0.25);
}

TEST_F(BonkoEngineTest, ASampleQueuedBeforeAStopIsStillHandledAfterIt) {
    engine->soundEnabled = true;
    engine->start();
    feelSample(1.0);
    engine->stop();
    platform.mainQueue.drain();
    EXPECT_EQ(engine->slapCount, 1);
    EXPECT_EQ(takePlayed(), Texts{"sexy/1.mp3"});
}

TEST_F(BonkoEngineTest, ASlapQueuedBeforeAStopIsStillHandledAfterIt) {
    engine->soundEnabled = true;
    engine->start();
    feelSample(1.0);
    ASSERT_TRUE(platform.mainQueue.runTurn()); // the slap is queued now
    engine->stop();
    platform.mainQueue.drain();
    EXPECT_EQ(engine->slapCount, 1);
    EXPECT_EQ(takePlayed(), Texts{"sexy/1.mp3"});
}

// The engine's end. In the place of the one that is gone there is another, so that a job that did not ask whether its
// engine is still there would be seen to do its work on that one.

TEST_F(BonkoEngineTest, AfterTheEngineIsGoneQueuedSamplesHaveNoEffect) {
    engine->start();
    feelSample(1.0);
    const BonkoEngine* const gone = &*engine;
    rebuild();
    ASSERT_EQ(&*engine, gone);
    platform.mainQueue.drain();
    EXPECT_EQ(engine->slapCount, 0);
    listen();
    EXPECT_TRUE(counts(0.5)); // the other detector has seen nothing, nor is it in a cooldown
}

TEST_F(BonkoEngineTest, AfterTheEngineIsGoneQueuedSlapsHaveNoEffect) {
    engine->start();
    feelSample(1.0);
    ASSERT_TRUE(platform.mainQueue.runTurn()); // the slap is queued now
    const BonkoEngine* const gone = &*engine;
    rebuild();
    ASSERT_EQ(&*engine, gone);
    platform.mainQueue.drain();
    EXPECT_EQ(engine->slapCount, 0);
}

TEST_F(BonkoEngineTest, AJobOfTheMainQueueMayDestroyTheEngineBeforeItsOwnJobs) {
    engine->start();
    mainQueue::post([this] { rebuild(); });
    feelSample(1.0);
    platform.mainQueue.drain();
    EXPECT_EQ(engine->slapCount, 0);
    EXPECT_FALSE(platform.registry.deviceIsOpen());
}

TEST_F(BonkoEngineTest, ItsEndClosesTheDeviceAndEndsTheSound) {
    engine->soundEnabled = true;
    listen();
    slap(0.25);
    ASSERT_EQ(platform.audio.lentPlayers(), 1U);
    engine.reset();
    EXPECT_FALSE(platform.registry.deviceIsOpen());
    EXPECT_EQ(platform.registry.lentObjects(), 0);
    EXPECT_EQ(platform.threads.live(), 0U);
    EXPECT_EQ(platform.audio.lentPlayers(), 0U);
}

} // namespace
} // namespace quiverly
