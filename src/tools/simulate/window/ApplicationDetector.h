#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>

#include "detection/SlapDetector.h"
#include "platform/virtual/VirtualPlatform.h"
#include "sensing/AccelerometerReader.h"
#include "tools/plot/Trace.h"

namespace quiverly {

// What the application makes of the reports: its own decoding and its own detector, fed with the same reports, on a
// virtual platform whose calendar follows the reports.
//
// The application decodes one report in eight, counted from its start. So amplitudes are the application's to the bit
// as long as the reports are those that one process has read from its first one on.
class ApplicationDetector {
public:
    std::function<void(const Reading& reading, bool isCoolingDown)> onReading; // seconds of the laptop's clock
    std::function<void(double seconds, double amplitude)> onSlap; // g; before the reading that it belongs to

    explicit ApplicationDetector(VirtualPlatform& platform); // which outlives it

    void setThreshold(double threshold);                // g
    double leastAmplitude() const { return threshold; } // of a slap, g

    // Reports that follow are read by that process. Another one than before has felt nothing yet.
    void begin(std::int64_t process);

    void feel(std::int64_t millisecond, std::span<const std::uint8_t> report);
    void miss(std::uint64_t reports); // which the application has received

private:
    // What the application has in a process.
    struct Road {
        AccelerometerReader reader;
        SlapDetector detector;
    };

    void makeRoad();
    void examine(double x, double y, double z);

    VirtualPlatform& platform;
    std::optional<Road> road;
    std::int64_t reader = 0; // its process
    double threshold = 0.12; // g
    double seconds = 0.0;
    double lastMagnitude = 0.0; // g
};

} // namespace quiverly
