#pragma once

#include <chrono>
#include <cstdint>
#include <vector>

#include "detection/SlapDetector.h"
#include "platform/virtual/VirtualPlatform.h"
#include "sensing/AccelerometerReader.h"
#include "tools/simulate/InputReport.h"
#include "tools/simulate/Motion.h"

namespace quiverly {

// The laptop's motion felt by the real reader and the real detector, on a calendar that keeps pace with the reports.
class FeltMotion {
public:
    explicit FeltMotion(std::uint64_t seed = 0) : motion(seed) {
        platform.registry.connectAccelerometer();
        reader.start();
        detector.onSlap = [this](double amplitude) { slaps.push_back(amplitude); };
        reader.onSample = [this](double x, double y, double z) {
            ++samples;
            detector.process(x, y, z);
        };
    }

    void feel(int reports) {
        for (int count = 0; count < reports; ++count) {
            platform.calendar.advance(std::chrono::milliseconds(1));
            platform.registry.deliver(inputReport(motion.next(), ++number));
        }
    }

    // Past the slap that a detector takes its very first sample for.
    void settle() {
        feel(1000);
        slaps.clear();
    }

    VirtualPlatform platform;
    Motion motion;
    SlapDetector detector;
    AccelerometerReader reader;
    std::uint32_t number = 0;
    int samples = 0;
    std::vector<double> slaps;
};

} // namespace quiverly
