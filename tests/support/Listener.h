#pragma once

#include <algorithm>
#include <cmath>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "sensing/AccelerometerReader.h"
#include "support/Sample.h"
#include "support/Waiting.h"

namespace quiverly {

// Samples as they come in from the sensor thread.
class Samples {
public:
    std::function<void(double, double, double)> receiver() {
        return [this](double x, double y, double z) {
            const std::lock_guard lock(mutex);
            samples.push_back({.x = x, .y = y, .z = z});
        };
    }

    std::vector<Sample> all() const {
        const std::lock_guard lock(mutex);
        return samples;
    }

    std::size_t count() const {
        const std::lock_guard lock(mutex);
        return samples.size();
    }

    Sample last() const {
        const std::lock_guard lock(mutex);
        return samples.empty() ? Sample{} : samples.back();
    }

    double greatestMagnitude() const {
        const std::lock_guard lock(mutex);
        double greatest = 0.0;
        for (const auto& [x, y, z] : samples) greatest = std::max(greatest, std::hypot(x, y, z));
        return greatest;
    }

private:
    mutable std::mutex mutex;
    std::vector<Sample> samples;
};

// A reader of the laptop that is there, and what it hears.
class Listener {
public:
    Listener() { reader.onSample = samples.receiver(); }

    bool start() { return reader.start(); }
    void stop() { reader.stop(); }
    std::string error() const { return reader.lastOpenError().value_or(""); }

    // Waits until it has started: on a busy machine a laptop may be silent for so long that it is taken for absent.
    bool starts() {
        return waitUntil([this] { return start(); });
    }

    // Waits for that many samples more.
    bool hears(std::size_t more = 1) const {
        const std::size_t before = samples.count();
        return waitUntil([&] { return samples.count() >= before + more; });
    }

    // Waits until more than that many g are heard, slapping every 75 samples: while a busy machine leaves the reader no
    // time reports are lost, and with them perhaps a peak.
    template<class Slap>
    bool hearsSlap(double magnitude, Slap slap) const {
        for (int attempt = 0; attempt < 20; ++attempt) {
            slap();
            if (!hears(75)) return false;
            if (samples.greatestMagnitude() > magnitude) return true;
        }
        return false;
    }

    Samples samples;
    AccelerometerReader reader; // ends before its samples do
};

} // namespace quiverly
