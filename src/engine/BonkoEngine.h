#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "detection/SlapDetector.h"
#include "engine/ChangePublisher.h"
#include "engine/Published.h"
#include "platform/calendar.h"
#include "sensing/AccelerometerReader.h"
#include "sound/SoundPack.h"
#include "sound/SoundPlayer.h"

namespace quiverly {

// The one coordinator: owns reader, detector and player, wires them into the road from a report to a clip, and holds
// the state that the views show.
//
// pack and threshold are the user's settings: restored when the engine is built, applied and stored at every write.
// Everything happens on the main thread, except that the sensor thread queues one job for each sample.
class BonkoEngine {
public:
    struct Phase {
        enum class Kind { idle, listening, error };
        Kind kind = Kind::idle;
        std::string message = {}; // why listening failed, shown to the user; empty unless kind is error

        bool operator==(const Phase&) const = default;
    };

    ChangePublisher objectWillChange; // of any of these properties

    Published<Phase, BonkoEngine> phase{objectWillChange, {}};
    Published<std::int64_t, BonkoEngine> slapCount{objectWillChange, 0}; // accepted since the engine was built
    Published<double, BonkoEngine> lastAmplitude{objectWillChange, 0.0}; // of the last accepted slap, in g
    Published<bool> soundEnabled{objectWillChange, false};
    Published<SoundPack> pack{objectWillChange, SoundPack::sexy, [this] { packDidChange(); }};
    Published<double> threshold{objectWillChange, 0.12, [this] { thresholdDidChange(); }}; // in g

    // For tools that show what the sensor feels: called with each sample, in g, after the detector has processed it;
    // the detector; and whether a hardware check has just begun and slaps are ignored.
    std::function<void(double x, double y, double z)> onSample;
    const SlapDetector& slapDetector() const { return detector; }
    bool isSettling() const { return calendar::now() < ignoreSlapsUntil; }

    BonkoEngine();
    BonkoEngine(const BonkoEngine&) = delete;
    BonkoEngine& operator=(const BonkoEngine&) = delete;

    bool isRunning() const;

    // Success or failure shows in phase. After a failure the page that grants access to the sensor is opened.
    void start();
    void stop(); // ends a hardware check too, but leaves the player on the check's pack

    // Listens for a firm test slap: settles for two seconds, then answers each accepted slap with the preview clip and
    // calls onSlap with its amplitude, until the check ends.
    void beginHardwareCheck(std::function<void(double amplitude)> onSlap);
    void endHardwareCheck();

private:
    void restoreSettings();
    void packDidChange();
    void thresholdDidChange();
    void installCallbacks();
    void handleSample(double x, double y, double z);
    void handleSlap(double amplitude);
    void leaveHardwareCheck();
    static void openInputMonitoringSettingsIfNeeded();

    AccelerometerReader reader;
    SlapDetector detector;
    SoundPlayer soundPlayer;
    std::function<void(double amplitude)> onboardingSlapHandler;
    calendar::TimePoint ignoreSlapsUntil = calendar::distantPast;
    bool onboardingMode = false;
    std::optional<double> savedThreshold; // the detector's, from before the hardware check

    // Queued jobs watch it: when it has gone, so has the engine.
    std::shared_ptr<const bool> alive = std::make_shared<const bool>(true);
};

} // namespace quiverly
