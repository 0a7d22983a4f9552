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
concept AssignableFrom = requires(Property& property, Value value) {
    property = value;
};
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

TEST_F(BonkoEngineTest, BuildingLoadsThePackAndInstallsTheCallbacksButDoesNotStartTheReader) {
    EXPECT_EQ(loadedPack(), SoundPack::sexy);
    EXPECT_EQ(loadedClips(), 3U);
    EXPECT_EQ(detector().threshold, 0.12);
    EXPECT_TRUE(detector().onSlap);
    EXPECT_TRUE(Inspector::reader(*engine).onSample.copy());
    EXPECT_FALSE(Inspector::reader(*engine).isRunning());
    EXPECT_FALSE(platform.registry.deviceIsOpen());
    EXPECT_FALSE(Inspector::onboardingMode(*engine));
    EXPECT_EQ(Inspector::savedThreshold(*engine), std::nullopt);
    EXPECT_EQ(Inspector::ignoreSlapsUntil(*engine), calendar::distantPast);
}

TEST_F(BonkoEngineTest, ErrorsAreEqualWhenTheirMessagesAre) {
    EXPECT_EQ((Phase{Kind::error, "a"}), (Phase{Kind::error, "a"}));
    EXPECT_NE((Phase{Kind::error, "a"}), (Phase{Kind::error, "b"}));
    EXPECT_NE((Phase{Kind::idle}), (Phase{Kind::listening}));
}

// The road from a sample to a slap

TEST_F(BonkoEngineTest, EverySampleIsOneJobOnTheMainThreadAndNothingElse) {
    double between = 0.0;
    engine->start();
    feelSample(1.0);
    platform.mainQueue.post([&] { between = Inspector::prevMag(detector()); });
    feelSample(1.5);
    EXPECT_EQ(Inspector::prevMag(detector()), 0.0); // nothing was processed on the sensor thread
    EXPECT_TRUE(platform.mainQueue.runTurn());
    EXPECT_EQ(between, 1.0);
    EXPECT_EQ(Inspector::prevMag(detector()), 1.5);
}

TEST_F(BonkoEngineTest, TheDetectorSeesTheSamplesInOrderOfArrival) {
    detector().cooldown = 0;
    detector().threshold = 0;
    std::vector<double> scores;
    detector().onSlap = [&](double score) { scores.push_back(score); };
    engine->start();
    for (const double magnitude : {1.0, 2.0, 4.0}) feelSample(magnitude);
    platform.mainQueue.drain();
    EXPECT_EQ(scores.size(), 3U);
    EXPECT_EQ(scores[0], 1.0);
    EXPECT_GT(scores[1], 0.9);
    EXPECT_EQ(Inspector::prevMag(detector()), 4.0);
}

// The squares are added in the order of the axes: with x and z exchanged the sum would be two more.
TEST_F(BonkoEngineTest, TheDetectorSeesTheAxesInTheirOrder) {
    (*Inspector::reader(*engine).onSample.copy())(1e8, 1, 1);
    platform.mainQueue.drain();
    EXPECT_EQ(Inspector::prevMag(detector()), 1e8);
    (*Inspector::reader(*engine).onSample.copy())(1, 1, 1e8);
    platform.mainQueue.drain();
    EXPECT_GT(Inspector::prevMag(detector()), 1e8);
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
    slap(0.3);
    EXPECT_EQ(engine->slapCount, 1);
    EXPECT_EQ(engine->lastAmplitude, 0.3);
    EXPECT_EQ(takePlayed(), Texts{});
    EXPECT_TRUE(Inspector::slapTimes(soundPlayer()).empty()); // a muted slap does not escalate
}

TEST_F(BonkoEngineTest, WithSoundOnASlapIsAnsweredByAClipOfThePack) {
    engine->soundEnabled = true;
    slap(0.3);
    EXPECT_EQ(takePlayed(), Texts{"sexy/1.mp3"});
    EXPECT_EQ(platform.audio.sounding().at(0).volume, 0.81F);
}

TEST_F(BonkoEngineTest, OutsideTheCheckTheEngineAsksForNoLeastAmplitude) {
    slap(0.001);
    slap(-1.0);
    EXPECT_EQ(engine->slapCount, 2);
    EXPECT_EQ(engine->lastAmplitude, -1.0);
}

TEST_F(BonkoEngineTest, ASlapBeforeTheSettlingTimeIsOverIsDroppedEvenOutsideTheCheck) {
    Inspector::ignoreSlapsUntil(*engine) = platform.calendar.now + 1ns;
    slap(0.3);
    EXPECT_EQ(engine->slapCount, 0);
    EXPECT_EQ(engine->lastAmplitude, 0.0);

    Inspector::ignoreSlapsUntil(*engine) = platform.calendar.now;
    slap(0.3);
    EXPECT_EQ(engine->slapCount, 1);
}

TEST_F(BonkoEngineTest, TheMomentAtWhichTheSlapIsHandledCountsNotThatOfItsDetection) {
    Inspector::ignoreSlapsUntil(*engine) = platform.calendar.now + 2s;
    detector().onSlap(0.3);
    platform.calendar.advance(2s);
    platform.mainQueue.drain();
    EXPECT_EQ(engine->slapCount, 1);
}

TEST_F(BonkoEngineTest, AnAcceptedSlapIsAnnouncedAsCountThenAmplitudeBeforeItIsPlayed) {
    engine->soundEnabled = true;
    watchProperties();
    const auto subscription = engine->objectWillChange.subscribe([&] { EXPECT_TRUE(played.empty()); });
    slap(0.3);
    EXPECT_EQ(announced, (Texts{"slapCount", "lastAmplitude"}));
    EXPECT_EQ(takePlayed(), Texts{"sexy/1.mp3"});
}

TEST_F(BonkoEngineTest, ADroppedSlapIsNotAnnounced) {
    Inspector::ignoreSlapsUntil(*engine) = platform.calendar.now + 1s;
    const auto subscription = engine->objectWillChange.subscribe([] { FAIL(); });
    slap(0.3);
}

TEST_F(BonkoEngineTest, StopFollowedByStartKeepsCountAndAmplitude) {
    engine->start();
    slap(0.3);
    engine->stop();
    engine->start();
    EXPECT_EQ(engine->slapCount, 1);
    EXPECT_EQ(engine->lastAmplitude, 0.3);
}

TEST_F(BonkoEngineTest, SamplesAndSlapsQueuedBeforeAStopAreStillHandledAfterIt) {
    engine->soundEnabled = true;
    engine->start();
    feelSample(1.0);
    engine->stop();
    platform.mainQueue.drain();
    EXPECT_EQ(engine->slapCount, 1);
    EXPECT_EQ(takePlayed(), Texts{"sexy/1.mp3"});
}

// The engine's end

TEST_F(BonkoEngineTest, AfterTheEngineIsGoneQueuedSamplesHaveNoEffect) {
    engine->soundEnabled = true;
    engine->start();
    feelSample(1.0);
    engine.reset();
    platform.mainQueue.drain();
    EXPECT_EQ(takePlayed(), Texts{});
}

TEST_F(BonkoEngineTest, AfterTheEngineIsGoneQueuedSlapsHaveNoEffect) {
    engine->soundEnabled = true;
    engine->start();
    feelSample(1.0);
    ASSERT_TRUE(platform.mainQueue.runTurn()); // the slap is queued now
    engine.reset();
    platform.mainQueue.drain();
    EXPECT_EQ(takePlayed(), Texts{});
}

TEST_F(BonkoEngineTest, CallbacksThatOutliveTheEngineHaveNoEffect) {
    const auto onSample = Inspector::reader(*engine).onSample.copy();
    const auto onSlap = detector().onSlap;
    engine.reset();
    (*onSample)(0, 0, 1);
    onSlap(0.5);
    platform.mainQueue.drain();
    EXPECT_EQ(takePlayed(), Texts{});
}

TEST_F(BonkoEngineTest, AJobOfTheMainQueueMayDestroyTheEngineBeforeItsOwnJobs) {
    engine->start();
    mainQueue::post([this] { engine.reset(); });
    feelSample(1.0);
    platform.mainQueue.drain();
    EXPECT_EQ(engine, std::nullopt);
    EXPECT_FALSE(platform.registry.deviceIsOpen());
}

TEST_F(BonkoEngineTest, ItsEndClosesTheDeviceAndEndsTheSound) {
    engine->soundEnabled = true;
    engine->start();
    slap(0.3);
    engine.reset();
    EXPECT_FALSE(platform.registry.deviceIsOpen());
    EXPECT_EQ(platform.registry.lentObjects(), 0);
    EXPECT_EQ(platform.threads.live(), 0U);
    EXPECT_EQ(platform.audio.lentPlayers(), 0U);
}

} // namespace
} // namespace quiverly
