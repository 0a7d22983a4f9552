#pragma once

#include "clips/synthesis/Random.h"
#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

// A blown tube, from saxophone to muted trumpet: a buzzing reed whose overtones open with the loudness, in a body that
// favours some of them. Gestures run over the length of the sound.
struct Horn {
    double seconds = 0.5;
    Gesture pitch = 220;     // hertz
    Gesture loudness = 1;    // 0 to 1
    Gesture openness = 3500; // hertz above which overtones fade: 500 is muted, 6000 blares
    double body = 650;       // hertz that the body favours
    double vibrato = 0.3;    // depth in semitones, reached a third of the way through
    double growl = 0;        // of the player's throat, 0 to 1
};

// The horn's sound with a peak of 1.
Signal blown(const Horn& horn, Random& random);

} // namespace quiverly::clips
