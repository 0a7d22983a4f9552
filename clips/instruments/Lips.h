#pragma once

#include "clips/synthesis/RandomNumbers.h"
#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

// Kissing and whistling, each with a peak of 1.

// A blown kiss: lips that squeak while they suck, then part with a smack.
Signal kiss(double seconds, RandomNumbers& random);

// A whistle with a little breath in it.
Signal whistle(double seconds, const Curve& hertz, const Curve& loudness, RandomNumbers& random);

} // namespace quiverly::clips
