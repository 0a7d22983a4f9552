#pragma once

#include "clips/synthesis/RandomNumbers.h"
#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

// The sounds of cold-blooded animals, each with a peak of 1.

// A throat sac: `knocks` a second that ring at a pitch in hertz.
Signal croak(double seconds, const Curve& knocks, const Curve& pitch, RandomNumbers& random);

// Air through the teeth; the brightness is the middle of its noise in hertz.
Signal hissed(double seconds, const Curve& brightness, const Curve& loudness, RandomNumbers& random);

// Dry beads or claws: single clicks, `clicks` a second; the brightness is their pitch in hertz.
Signal rattled(double seconds, const Curve& clicks, double brightness, const Curve& loudness, RandomNumbers& random);

// A wet tongue or lip, pulled in or let go: noise through a resonance that follows a pitch in hertz.
Signal slurp(double seconds, const Curve& pitch, RandomNumbers& random);

} // namespace quiverly::clips
