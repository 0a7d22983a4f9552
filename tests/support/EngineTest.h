#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "engine/BonkoEngine.h"
#include "platform/virtual/VirtualPlatform.h"
#include "support/TemporaryFolder.h"

namespace quiverly {

// An engine on a virtual laptop whose accelerometer can be opened. Each pack has the clips 1.mp3 and 2.mp3, sexy also
// 28.mp3. What is played, opened and stored is written down.
class EngineTest : public testing::Test {
protected:
    using Kind = BonkoEngine::Phase::Kind;
    using Phase = BonkoEngine::Phase;
    using Texts = std::vector<std::string>;

    EngineTest() {
        for (const SoundPack pack : SoundPack::allCases) {
            for (const char* clip : {"1.mp3", "2.mp3"}) addClip(pack, clip);
        }
        addClip(SoundPack::sexy, "28.mp3");
        platform.resources.folders = {resources.path()};
        connectSensor();
        platform.audio.onPlay = [this](const VirtualAudio::PlayedClip& clip) {
            played.push_back(clip.file.parent_path().filename() / clip.file.filename());
        };
        platform.workspace.onOpen = [this](const std::string& url) { openedPages.push_back(url); };
        platform.defaults.onWrite = [this](const std::string& key, const defaults::Object&) {
            writtenKeys.push_back(key);
        };
    }

    void addClip(SoundPack pack, const char* name) {
        resources.addFile(std::filesystem::path("audio") / pack.folder() / name);
    }

    void connectSensor() { platform.registry.connectAccelerometer(); }
    void removeSensor() { platform.registry.services.clear(); }

    void build() { engine.emplace(); }

    // Writes down, by name, each property that is announced from now on.
    void watchProperties() {
        const auto watch = [this](auto& property, const char* name) {
            subscriptions.push_back(property.willChange.subscribe([this, name] { announced.emplace_back(name); }));
        };
        watch(engine->phase, "phase");
        watch(engine->slapCount, "slapCount");
        watch(engine->lastAmplitude, "lastAmplitude");
        watch(engine->soundEnabled, "soundEnabled");
        watch(engine->pack, "pack");
        watch(engine->threshold, "threshold");
    }

    TemporaryFolder resources;
    VirtualPlatform platform;
    Texts played; // such as "sexy/1.mp3"
    Texts openedPages;
    Texts writtenKeys;
    Texts announced;
    std::vector<ChangePublisher::Subscription> subscriptions;
    std::optional<BonkoEngine> engine;
};

inline void PrintTo(const BonkoEngine::Phase& phase, std::ostream* out) {
    *out << "phase " << static_cast<int>(phase.kind) << " \"" << phase.message << '"';
}

} // namespace quiverly
