#pragma once

#include "clips/synthesis/RandomNumbers.h"
#include "clips/synthesis/Signal.h"
#include "clips/synthesis/Vibrato.h"

namespace quiverly::clips {

Signal sine(double seconds, const Curve& hertz);

// A saw wave, which has every harmonic; free of aliasing.
Signal saw(double seconds, const Curve& hertz, Vibrato vibrato = {0, 0});

Signal whiteNoise(double seconds, RandomNumbers& random);

// The correction that keeps a jump in an oscillator's wave from aliasing ("PolyBLEP"), for a jump of height 1. The
// phase, 0 to 1, counts from the jump; the step is how far it moves in one sample.
double smoothedJump(double phase, double step);

} // namespace quiverly::clips
