#pragma once

#include "clips/synthesis/Random.h"
#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

// What cold-blooded things say without vocal folds like ours, each with a peak of 1.

// A throat sac that knocks so many times a second and rings at a pitch, both in hertz.
Signal croak(double seconds, const Gesture& knocks, const Gesture& pitch, Random& random);

// Air through the teeth; the brighter, the narrower the gap, in hertz.
Signal hissed(double seconds, const Gesture& brightness, const Gesture& loudness, Random& random);

// Dry beads or claws: single clicks, so many a second.
Signal rattled(double seconds, const Gesture& clicks, double brightness, const Gesture& loudness, Random& random);

// Something wet that is pulled in or let go: a resonance that slides through a gesture in hertz.
Signal slurp(double seconds, const Gesture& pitch, Random& random);

} // namespace quiverly::clips
