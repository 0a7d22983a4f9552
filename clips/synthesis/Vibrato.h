#pragma once

#include <algorithm>
#include <cmath>
#include <numbers>

#include "clips/synthesis/Signal.h"
#include "clips/synthesis/Tuning.h"

namespace quiverly::clips {

// The vibrato of a held note; it reaches its full depth a third of the way through the sound.
class Vibrato {
public:
    Vibrato(double depth, double hertz) : depth(depth), hertz(hertz) {}

    // The factor on the pitch of the next sample; along is the fraction of the sound that has passed.
    double operator()(double along) {
        if (depth == 0) return 1;
        phase += hertz / sampleRate;
        return semitoneRatio(depth * std::min(1.0, 3 * along) * std::sin(2 * std::numbers::pi * phase));
    }

private:
    double depth; // semitones
    double hertz;
    double phase = 0;
};

} // namespace quiverly::clips
