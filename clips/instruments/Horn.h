#pragma once

#include "clips/synthesis/RandomNumbers.h"
#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

// A wind instrument, from saxophone to muted trumpet: a buzzing reed in a body that favours some of its overtones.
// Curves run over the length of the sound.
struct Horn {
    double seconds = 0.5;
    Curve pitch = 220;     // hertz
    Curve loudness = 1;    // 0 to 1
    Curve openness = 3500; // hertz above which overtones fade: 500 is muted, 6000 blares
    double body = 650;     // hertz that the body favours
    double vibrato = 0.3;  // depth in semitones, reached a third of the way through
    double growl = 0;      // the player's throat: 0 clear, 1 rough
};

// The horn's sound with a peak of 1.
Signal blown(const Horn& horn, RandomNumbers& random);

} // namespace quiverly::clips
