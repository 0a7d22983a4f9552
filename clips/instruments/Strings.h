#pragma once

#include "clips/synthesis/RandomNumbers.h"
#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

// Several bowed strings that follow one pitch in hertz, together with a peak of 1.
Signal bowed(double seconds, const Curve& hertz, const Curve& loudness, RandomNumbers& random);

} // namespace quiverly::clips
