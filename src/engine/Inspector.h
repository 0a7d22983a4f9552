#pragma once

#include "engine/BonkoEngine.h"

namespace quiverly {

// Reaches into the objects of the road: for tests, and for tools that show what happens inside. Nothing else does.
struct Inspector {
    // AccelerometerReader
    static void handleReport(AccelerometerReader& reader, const std::uint8_t* report, std::ptrdiff_t length) {
        reader.handleReport(report, length);
    }
    static std::int32_t readInt32LE(std::span<const std::uint8_t> bytes, std::ptrdiff_t offset) {
        return AccelerometerReader::readInt32LE(bytes, offset);
    }
    static constexpr hid::InputReportCallback inputReportCallback = AccelerometerReader::inputReportCallback;
    static std::int64_t& decimationCounter(AccelerometerReader& reader) { return reader.decimationCounter; }
    static const std::uint8_t* reportBuffer(const AccelerometerReader& reader) { return reader.reportBuffer.get(); }
    static const hid::Device* hidDevice(const AccelerometerReader& reader) { return reader.hidDevice.get(); }
    static const Thread* hidThread(const AccelerometerReader& reader) { return reader.hidThread.get(); }

    // SlapDetector
    static double& baseline(SlapDetector& detector) { return detector.baseline; }
    static double& prevMag(SlapDetector& detector) { return detector.prevMag; }
    static calendar::TimePoint& lastFire(SlapDetector& detector) { return detector.lastFire; }

    // SoundPlayer
    static SoundPack pack(const SoundPlayer& player) { return player.pack; }
    static const std::vector<std::filesystem::path>& files(const SoundPlayer& player) { return player.files; }
    static std::vector<calendar::TimePoint>& slapTimes(SoundPlayer& player) { return player.slapTimes; }

    // BonkoEngine
    static AccelerometerReader& reader(BonkoEngine& engine) { return engine.reader; }
    static SlapDetector& detector(BonkoEngine& engine) { return engine.detector; }
    static SoundPlayer& soundPlayer(BonkoEngine& engine) { return engine.soundPlayer; }
    static void handleSlap(BonkoEngine& engine, double amplitude) { engine.handleSlap(amplitude); }
    static calendar::TimePoint& ignoreSlapsUntil(BonkoEngine& engine) { return engine.ignoreSlapsUntil; }
    static bool onboardingMode(const BonkoEngine& engine) { return engine.onboardingMode; }
    static std::optional<double> savedThreshold(const BonkoEngine& engine) { return engine.savedThreshold; }
};

} // namespace quiverly
