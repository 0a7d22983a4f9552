#include "engine/BonkoEngine.h"

#include <algorithm>
#include <chrono>
#include <utility>
#include <variant>

#include "platform/defaults.h"
#include "platform/main_queue.h"
#include "platform/workspace.h"

namespace quiverly {

namespace {

constexpr char packKey[] = "bonko.pack";
constexpr char thresholdKey[] = "bonko.threshold";

constexpr std::chrono::seconds settlingTime{2};
constexpr double minimumCheckThreshold = 0.22; // g
constexpr double minimumCheckAmplitude = 0.18; // g

} // namespace

BonkoEngine::BonkoEngine() {
    restoreSettings();
    soundPlayer.load(pack);
    detector.threshold = threshold;
    installCallbacks();
}

void BonkoEngine::restoreSettings() {
    if (const auto stored = defaults::text(packKey)) {
        if (const auto savedPack = SoundPack::fromRawValue(*stored)) pack = *savedPack;
    }
    if (const auto stored = defaults::object(thresholdKey)) {
        if (const double* number = std::get_if<double>(&*stored)) threshold = *number;
    }
}

void BonkoEngine::packDidChange() {
    soundPlayer.load(pack);
    defaults::setText(packKey, pack.get().rawValue());
}

void BonkoEngine::thresholdDidChange() {
    detector.threshold = threshold;
    defaults::setNumber(thresholdKey, threshold);
}

void BonkoEngine::installCallbacks() {
    const std::weak_ptr<const bool> life = alive;
    detector.onSlap = [this, life](double amplitude) {
        mainQueue::post([this, life, amplitude] {
            if (!life.expired()) handleSlap(amplitude);
        });
    };
    reader.onSample = [this, life](double x, double y, double z) {
        mainQueue::post([this, life, x, y, z] {
            if (!life.expired()) handleSample(x, y, z);
        });
    };
}

void BonkoEngine::handleSample(double x, double y, double z) {
    detector.process(x, y, z);
    if (const auto watcher = onSample) watcher(x, y, z); // a copy: the watcher may end the engine
}

void BonkoEngine::handleSlap(double amplitude) {
    if (isSettling()) return;
    if (onboardingMode && amplitude < minimumCheckAmplitude) return;

    slapCount.write(slapCount + 1);
    lastAmplitude.write(amplitude);
    if (const auto handler = onboardingSlapHandler) { // a copy: the handler may end the check, or the engine
        soundPlayer.playHardwarePreview(amplitude);
        handler(amplitude);
    } else {
        soundPlayer.playSlap(amplitude, !soundEnabled);
    }
}

bool BonkoEngine::isRunning() const {
    return phase.get().kind == Phase::Kind::listening;
}

void BonkoEngine::start() {
    if (isRunning()) return;
    if (reader.start()) {
        phase.write({Phase::Kind::listening});
    } else {
        phase.write({Phase::Kind::error, reader.lastOpenError().value_or("Accelerometer unavailable")});
        openInputMonitoringSettingsIfNeeded();
    }
}

void BonkoEngine::stop() {
    reader.stop();
    phase.write({Phase::Kind::idle});
    leaveHardwareCheck();
}

void BonkoEngine::beginHardwareCheck(std::function<void(double amplitude)> onSlap) {
    soundEnabled = false;
    onboardingMode = true;
    onboardingSlapHandler = std::move(onSlap);
    ignoreSlapsUntil = calendar::now() + settlingTime;
    savedThreshold = detector.threshold;
    detector.threshold = std::max<double>(threshold, minimumCheckThreshold);
    soundPlayer.load(SoundPack::sexy);
    start();
}

void BonkoEngine::endHardwareCheck() {
    leaveHardwareCheck();
    soundPlayer.load(pack);
}

void BonkoEngine::leaveHardwareCheck() {
    onboardingSlapHandler = nullptr;
    onboardingMode = false;
    if (savedThreshold) detector.threshold = *std::exchange(savedThreshold, std::nullopt);
}

void BonkoEngine::openInputMonitoringSettingsIfNeeded() {
    if (const auto page = workspace::sensorAccessPage()) workspace::openURL(*page);
}

} // namespace quiverly
