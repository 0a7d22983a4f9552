#pragma once

#include "clips/synthesis/Random.h"
#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

// What lips do besides shaping vowels, each with a peak of 1.

// A blown kiss: lips that squeak while they suck, then part with a smack.
Signal kiss(double seconds, Random& random);

// A whistle with a little breath in it.
Signal whistle(double seconds, const Gesture& hertz, const Gesture& loudness, Random& random);

} // namespace quiverly::clips
