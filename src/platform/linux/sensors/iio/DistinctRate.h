#pragma once

#include <array>
#include <cstddef>
#include <optional>

#include "platform/linux/sensors/iio/units.h"

namespace quiverly {

// How often a sensor really has something new to say, whatever it states: some answer at once from a memory that
// changes 5 times a second.
//
// Only what follows a jump counts, the time until the next reading that is different: at rest readings may repeat
// however fast the sensor is, and while it is moved they do not. One thread at a time.
class DistinctRate {
public:
    static constexpr double leastUsable = 40.0; // readings a second; below, most slaps are missed
    static constexpr double good = 80.0;        // below, only hard slaps are heard

    // A reading and when it was taken, in seconds of a clock that is never set. Whether perSecond() has changed.
    bool add(const Acceleration3& reading, double seconds);

    // Different readings a second, of the last few jumps; nothing until there have been enough.
    std::optional<double> perSecond() const;

private:
    std::array<double, 16> gaps = {}; // seconds from a jump to the next change, the oldest replaced first
    std::size_t count = 0;            // of all gaps so far
    std::optional<Acceleration3> last;
    double lastChange = 0.0;
    bool jumped = false;
};

} // namespace quiverly
