#pragma once

#include "clips/synthesis/RandomNumbers.h"
#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

// Cartoon impacts, each with a peak of 1.

// A dull body blow whose pitch falls by an octave and more.
Signal thump(double hertz, double seconds);

// A short slap of noise around a frequency.
Signal smack(double hertz, double seconds, RandomNumbers& random);

// A cork leaving its bottle.
Signal pop(RandomNumbers& random);

// A cymbal struck; brightness in hertz is where its noise begins.
Signal crash(double seconds, double brightness, RandomNumbers& random);

// A steel spring let go: a pitch that wobbles around hertz ever faster and less.
Signal boing(double hertz, double seconds);

} // namespace quiverly::clips
