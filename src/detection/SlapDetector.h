#pragma once

#include <functional>

#include "platform/calendar.h"

namespace quiverly {

// Decides when a stream of acceleration samples contains a slap.
//
// Feed every sample, in order, to process(). The score of a sample is how far its magnitude jumps, from the running
// baseline or from the sample before, whichever is more; it becomes the slap's amplitude. What the detector remembers
// outlives pauses of listening. Main thread only.
class SlapDetector {
public:
    double threshold = 0.12;                      // least score that counts as a slap, in g
    double cooldown = 0.55;                       // least calendar time between two slaps, in seconds
    std::function<void(double amplitude)> onSlap; // called inside process(), as its last step; may replace itself

    void process(double x, double y, double z); // one sample, in g

private:
    double prevMag = 0.0;
    double baseline = 1.0; // running average of the magnitude; a device at rest reads 1 g
    calendar::TimePoint lastFire = calendar::distantPast;
};

} // namespace quiverly
