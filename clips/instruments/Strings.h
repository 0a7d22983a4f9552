#pragma once

#include "clips/synthesis/Random.h"
#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

// A desk of bowed strings sliding along a pitch in hertz, with a peak of 1.
Signal bowed(double seconds, const Gesture& hertz, const Gesture& loudness, Random& random);

} // namespace quiverly::clips
