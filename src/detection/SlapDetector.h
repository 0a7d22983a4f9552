#pragma once

#include <functional>

#include "platform/calendar.h"

namespace quiverly {

// Decides when a stream of acceleration samples contains a slap.
//
// Feed every sample, in order, to process(). The score of a sample becomes the amplitude of the slap. What the detector
// remembers outlives pauses of listening. Main thread only.
class SlapDetector {
public:
    double threshold = 0.12;                      // least score that counts as a slap, in g
    double cooldown = 0.55;                       // least calendar time between two slaps, in seconds
    std::function<void(double amplitude)> onSlap; // called inside process(), as its last step; may replace itself

    void process(double x, double y, double z); // one sample, in g

    // What the samples so far have come to, for tools that show it.
    double magnitude() const { return prevMag; }        // of the last sample, in g
    double runningBaseline() const { return baseline; } // in g
    bool isCoolingDown(calendar::TimePoint now) const { return calendar::elapsed(lastFire, now) < cooldown; }

    // How far a magnitude jumps from the baseline or from the magnitude before it, whichever is more; in g.
    static double score(double mag, double baseline, double prevMag);

private:
    double prevMag = 0.0;
    double baseline = 1.0; // running average of the magnitude; a device at rest reads 1 g
    calendar::TimePoint lastFire = calendar::distantPast;
};

} // namespace quiverly
