#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include "support/BuiltEngineTest.h"

namespace quiverly {
namespace {

class BonkoEngineSettingsTest : public BuiltEngineTest {
protected:
    // Builds the engine anew on what the store holds.
    void rebuild() {
        engine.reset();
        writtenKeys.clear();
        build();
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
        EXPECT_EQ(loadedPack(), pack);
        EXPECT_EQ(writtenKeys, Texts{"bonko.pack"});
        EXPECT_EQ(storedPack(), pack.rawValue());
    }
}

TEST_F(BonkoEngineSettingsTest, ATextThatIsNoRawValueLeavesSexyAndIsNotRewritten) {
    for (const std::string text : {"Halo", "LIZARD", "", " pain", "tiger"}) {
        storePack(text);
        rebuild();
        EXPECT_EQ(engine->pack, SoundPack::sexy) << text;
        EXPECT_EQ(writtenKeys, Texts{});
        EXPECT_EQ(storedPack(), text);
    }
}

TEST_F(BonkoEngineSettingsTest, APackThatIsNoTextLeavesSexy) {
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
        EXPECT_EQ(detector().threshold, number);
        EXPECT_EQ(writtenKeys, Texts{"bonko.threshold"});
        EXPECT_EQ(storedThreshold(), number);
    }
}

TEST_F(BonkoEngineSettingsTest, AThresholdStoredAsTextLeavesTheDefaultAndIsNotRewritten) {
    storeThreshold("0.2");
    rebuild();
    EXPECT_EQ(engine->threshold, 0.12);
    EXPECT_EQ(detector().threshold, 0.12);
    EXPECT_EQ(writtenKeys, Texts{});
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
    EXPECT_EQ(loadedPack(), SoundPack::pain);
    EXPECT_EQ(storedPack(), "pain");
}

TEST_F(BonkoEngineSettingsTest, AssigningTheCurrentPackAgainReloadsThePlayerAndRewritesTheSameKey) {
    engine->pack = SoundPack::sexy;
    addClip(SoundPack::sexy, "29.mp3");
    EXPECT_EQ(loadedClips(), 3U);
    engine->pack = SoundPack::sexy;
    EXPECT_EQ(loadedClips(), 4U);
    EXPECT_EQ(writtenKeys, (Texts{"bonko.pack", "bonko.pack"}));
}

TEST_F(BonkoEngineSettingsTest, MovingTheSliderWritesTheThresholdOnEveryChangeAndTheDetectorUsesItAtOnce) {
    int moves = 0;
    for (const double threshold : {0.13, 0.2, 0.2, 0.05}) {
        engine->threshold = threshold;
        EXPECT_EQ(detector().threshold, threshold);
        EXPECT_EQ(storedThreshold(), threshold);
        EXPECT_EQ(writtenKeys.size(), static_cast<std::size_t>(++moves));
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
        EXPECT_EQ(detector().threshold, 0.12);
    });
    engine->threshold = 0.2;
    EXPECT_EQ(announced, Texts{"threshold"});
    EXPECT_EQ(engine->threshold, 0.2);
    EXPECT_EQ(writtenKeys, Texts{"bonko.threshold"});
}

TEST_F(BonkoEngineSettingsTest, WhatIsStoredHasTakenEffectAlready) {
    std::vector<std::pair<SoundPack, double>> inEffect;
    platform.defaults.onWrite = [&](const std::string&, const defaults::Object&) {
        inEffect.emplace_back(loadedPack(), detector().threshold);
    };
    engine->pack = SoundPack::halo;
    engine->threshold = 0.2;
    EXPECT_EQ(inEffect, (std::vector<std::pair<SoundPack, double>>{{SoundPack::halo, 0.12}, {SoundPack::halo, 0.2}}));
}

TEST_F(BonkoEngineSettingsTest, NothingElseIsEverStored) {
    engine->soundEnabled = true;
    engine->start();
    engine->beginHardwareCheck([](double) {});
    engine->endHardwareCheck();
    slap(0.5);
    engine->stop();
    EXPECT_EQ(writtenKeys, Texts{});
}

} // namespace
} // namespace quiverly
