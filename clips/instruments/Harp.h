#pragma once

#include "clips/synthesis/RandomNumbers.h"
#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

// A plucked string (K. Karplus and A. Strong, 1983) with a peak of 1. Brightness 0 is a fingertip on nylon, 1 a nail
// on steel.
Signal plucked(double hertz, double seconds, double brightness, RandomNumbers& random);

} // namespace quiverly::clips
