#pragma once

#include "clips/synthesis/Random.h"
#include "clips/synthesis/Signal.h"
#include "clips/synthesis/Vibrato.h"

namespace quiverly::clips {

Signal sine(double seconds, const Gesture& hertz);

// A saw wave: every harmonic, without the whistle of aliasing.
Signal saw(double seconds, const Gesture& hertz, Vibrato vibrato = {0, 0});

// White noise.
Signal hiss(double seconds, Random& random);

// What smooths a jump of an oscillator so that it does not alias, to be added with the jump's height: phase is the
// distance from the jump, 0 to 1 around, and step is the phase passed in one sample ("PolyBLEP").
double smoothedJump(double phase, double step);

} // namespace quiverly::clips
