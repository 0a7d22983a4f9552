#pragma once

#include "clips/synthesis/RandomNumbers.h"
#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

// The sounds of cold-blooded animals, each with a peak of 1.

// A throat sac: `knocks` a second that ring at a pitch in hertz and, as a scraped log does, off its overtones.
Signal croak(double seconds, const Curve& knocks, const Curve& pitch, RandomNumbers& random);

// A reptile's growl: air let out in beats through a gaping throat. It has no pitch, and its resonances lie where no
// human mouth has them. Curves run over the length of the sound.
struct Growl {
    double seconds = 1;
    Curve beats = 40;     // a second
    Curve gape = 1;       // factor on the resonances
    double body = 120;    // hertz of the lowest resonance: 60 a monster, 250 small
    Curve loudness = 1;   // 0 to 1
    double roughness = 1; // 0 even beats, 1 torn ones
};
Signal growled(const Growl& growl, RandomNumbers& random);

// The chirp of a small animal: a pitch in hertz with overtones that do not fit it, trilled; 1 is the roughest.
Signal chirped(double seconds, const Curve& pitch, double roughness, RandomNumbers& random);

// Air through the teeth; the brightness is the middle of its noise in hertz.
Signal hissed(double seconds, const Curve& brightness, const Curve& loudness, RandomNumbers& random);

// Dry beads or claws: single clicks, `clicks` a second; the brightness is their pitch in hertz.
Signal rattled(double seconds, const Curve& clicks, double brightness, const Curve& loudness, RandomNumbers& random);

} // namespace quiverly::clips
