#pragma once

#include <algorithm>
#include <cmath>
#include <numbers>

#include "synthesis/Pitch.h"
#include "synthesis/Signal.h"

namespace quiverly::clips {

// The slow sway of a held pitch, which has its full depth a third of the way through a sound.
class Vibrato {
public:
    Vibrato(double depth, double hertz) : depth_(depth), hertz_(hertz) {}

    // The factor on the next sample's pitch; along is the fraction of the sound that has passed.
    double operator()(double along) {
        if (depth_ == 0) {
            return 1;
        }
        phase_ += hertz_ / sampleRate;
        return semitones(depth_ * std::min(1.0, 3 * along) * std::sin(2 * std::numbers::pi * phase_));
    }

private:
    double depth_; // semitones
    double hertz_;
    double phase_ = 0;
};

} // namespace quiverly::clips
