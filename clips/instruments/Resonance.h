#pragma once

#include <cmath>
#include <numbers>

#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

// A pair of poles with gain 1 at 0 Hz, so that resonances in a row get their natural loudness without gains of their
// own.
class Resonance {
public:
    void tune(double hertz, double width) {
        const double radius = std::exp(-std::numbers::pi * width / sampleRate);
        older = -radius * radius;
        newer = 2 * radius * std::cos(2 * std::numbers::pi * hertz / sampleRate);
    }

    double operator()(double sample) {
        const double out = (1 - newer - older) * sample + newer * last + older * beforeLast;
        beforeLast = last;
        last = out;
        return out;
    }

private:
    double newer = 0;
    double older = 0;
    double last = 0;
    double beforeLast = 0;
};

} // namespace quiverly::clips
