#include <chrono>
#include <string>
#include <vector>

#include "support/BuiltEngineTest.h"

namespace quiverly {
namespace {

class BonkoEngineSettingsTest : public BuiltEngineTest {
protected:
    // Builds the engine anew on what the store holds.
    void rebuild() {
        writtenKeys.clear();
        BuiltEngineTest::rebuild();
    }

    void storePack(const defaults::Object& object) { platform.defaults.values["bonko.pack"] = object; }
    void storeThreshold(const defaults::Object& object) { platform.defaults.values["bonko.threshold"] = object; }

    std::string storedPack() { return std::get<std::string>(platform.defaults.values.at("bonko.pack")); }
    double storedThreshold() { return std::get<double>(platform.defaults.values.at("bonko.threshold")); }
};

// Restoring

TEST_F(BonkoEngineSettingsTest, AnEmptyStoreYieldsTheDefaultsAndNothingIsWritten) {
    EXPECT_EQ(engine->pack, SoundPack::sexy);
    EXPECT_EQ(engine->threshold, 0.12);
    EXPECT_EQ(writtenKeys, Texts{});
    EXPECT_TRUE(platform.defaults.values.empty());
}

TEST_F(BonkoEngineSettingsTest, EachStoredPackIsRestoredLoadedAndWrittenBack) {
    for (const SoundPack pack : SoundPack::allCases) {
        storePack(pack.rawValue());
        rebuild();
        EXPECT_EQ(engine->pack, pack);
        EXPECT_EQ(writtenKeys, Texts{"bonko.pack"});
        EXPECT_EQ(storedPack(), pack.rawValue());
        listen();
        EXPECT_EQ(packThatAnswers(), pack.folder());
    }
}

TEST_F(BonkoEngineSettingsTest, ATextThatIsNotARawValueLeavesSexyAndIsNotRewritten) {
    for (const std::string text : {"Halo", "LIZARD", "", " pain", "tiger"}) {
        storePack(text);
        rebuild();
        EXPECT_EQ(engine->pack, SoundPack::sexy) << text;
        EXPECT_EQ(writtenKeys, Texts{});
        EXPECT_EQ(storedPack(), text);
    }
}

TEST_F(BonkoEngineSettingsTest, APackThatIsNotATextLeavesSexy) {
    for (const auto& object : {defaults::Object(1.0), defaults::Object(defaults::OtherObject())}) {
        storePack(object);
        rebuild();
        EXPECT_EQ(engine->pack, SoundPack::sexy);
        EXPECT_EQ(writtenKeys, Texts{});
    }
}

TEST_F(BonkoEngineSettingsTest, AStoredNumberIsTheThresholdWhateverItsSize) {
    for (const double number : {3.0, 0.2, 0.0, -1.0, 1e300}) {
        storeThreshold(number);
        rebuild();
        EXPECT_EQ(engine->threshold, number);
        EXPECT_EQ(writtenKeys, Texts{"bonko.threshold"});
        EXPECT_EQ(storedThreshold(), number);
    }
}

TEST_F(BonkoEngineSettingsTest, TheDetectorGetsTheStoredThreshold) {
    storeThreshold(0.3);
    rebuild();
    listen();
    expectDetectorThreshold(0.3);

    storeThreshold(-1.0);
    rebuild();
    listen();
    EXPECT_TRUE(counts(0.0));

    storeThreshold(1e300);
    rebuild();
    listen();
    EXPECT_FALSE(counts(20.0));
}

TEST_F(BonkoEngineSettingsTest, AThresholdStoredAsTextLeavesTheDefaultAndIsNotRewritten) {
    storeThreshold("0.2");
    rebuild();
    EXPECT_EQ(engine->threshold, 0.12);
    EXPECT_EQ(writtenKeys, Texts{});
    listen();
    expectDetectorThreshold(0.12);
}

TEST_F(BonkoEngineSettingsTest, AThresholdOfAnotherTypeLeavesTheDefault) {
    storeThreshold(defaults::OtherObject());
    rebuild();
    EXPECT_EQ(engine->threshold, 0.12);
}

TEST_F(BonkoEngineSettingsTest, ThePackIsRestoredBeforeTheThreshold) {
    storePack("halo");
    storeThreshold(0.2);
    rebuild();
    EXPECT_EQ(writtenKeys, (Texts{"bonko.pack", "bonko.threshold"}));
}

TEST_F(BonkoEngineSettingsTest, NextTimeTheEngineFindsWhatWasChosen) {
    engine->pack = SoundPack::lizard;
    engine->threshold = 0.3;
    rebuild();
    EXPECT_EQ(engine->pack, SoundPack::lizard);
    EXPECT_EQ(engine->threshold, 0.3);
}

// Changing

TEST_F(BonkoEngineSettingsTest, ChangingThePackLoadsAndStoresIt) {
    engine->pack = SoundPack::pain;
    EXPECT_EQ(storedPack(), "pain");
    listen();
    EXPECT_EQ(packThatAnswers(), "pain");
}

TEST_F(BonkoEngineSettingsTest, AssigningTheCurrentPackAgainReloadsThePlayerAndRewritesTheSameKey) {
    listen();
    engine->soundEnabled = true;
    addClip(SoundPack::sexy, "0.mp3");
    slap(0.5);
    EXPECT_EQ(takePlayed(), Texts{"sexy/1.mp3"});
    engine->pack = SoundPack::sexy;
    platform.calendar.advance(std::chrono::minutes(5));
    slap(0.5);
    EXPECT_EQ(takePlayed(), Texts{"sexy/0.mp3"});
    engine->pack = SoundPack::sexy;
    EXPECT_EQ(writtenKeys, (Texts{"bonko.pack", "bonko.pack"}));
}

TEST_F(BonkoEngineSettingsTest, MovingTheSliderWritesTheThresholdOnEveryChangeAndTheDetectorUsesItAtOnce) {
    listen();
    std::size_t moves = 0;
    for (const double threshold : {0.13, 0.2, 0.2, 0.05}) {
        engine->threshold = threshold;
        EXPECT_EQ(storedThreshold(), threshold);
        EXPECT_EQ(writtenKeys.size(), ++moves);
        expectDetectorThreshold(threshold);
    }
}

TEST_F(BonkoEngineSettingsTest, TheNextSampleIsJudgedByTheNewThreshold) {
    engine->start();
    feelSample(1.0);
    platform.mainQueue.drain();
    platform.calendar.advance(std::chrono::seconds(1));
    engine->threshold = 0.6;
    feelSample(1.5);
    platform.mainQueue.drain();
    EXPECT_EQ(engine->slapCount, 1);
    engine->threshold = 0.4;
    feelSample(1.0);
    platform.mainQueue.drain();
    EXPECT_EQ(engine->slapCount, 2);
}

TEST_F(BonkoEngineSettingsTest, ObserversAreToldBeforeTheValueChangesAndTheEffectsRunAfterIt) {
    watchProperties();
    const auto subscription = engine->objectWillChange.subscribe([&] {
        EXPECT_TRUE(writtenKeys.empty());
        EXPECT_EQ(engine->threshold, 0.12);
    });
    engine->threshold = 0.2;
    EXPECT_EQ(announced, Texts{"threshold"});
    EXPECT_EQ(engine->threshold, 0.2);
    EXPECT_EQ(writtenKeys, Texts{"bonko.threshold"});
}

TEST_F(BonkoEngineSettingsTest, WhatIsStoredHasTakenEffectAlready) {
    listen();
    Texts answers;
    platform.defaults.onWrite = [&](const std::string& key, const defaults::Object&) {
        answers.push_back(key + ' ' + packThatAnswers());
    };
    engine->pack = SoundPack::halo;
    engine->threshold = 0.6;
    EXPECT_EQ(answers, (Texts{"bonko.pack halo", "bonko.threshold silence"}));
}

TEST_F(BonkoEngineSettingsTest, NothingElseIsEverStored) {
    engine->soundEnabled = true;
    listen();
    engine->beginHardwareCheck([](double) {});
    slap(0.5);
    slap(0.5);
    engine->endHardwareCheck();
    slap(0.5);
    engine->stop();
    EXPECT_EQ(engine->slapCount, 2);
    EXPECT_EQ(writtenKeys, Texts{});
}

} // namespace
} // namespace quiverly
