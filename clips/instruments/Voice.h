#pragma once

#include <vector>

#include "clips/instruments/MouthShape.h"
#include "clips/synthesis/RandomNumbers.h"
#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

// One breath of a singing, yelping or growling throat: pulses of the vocal folds (after D. Klatt and L. Klatt, 1990)
// and the noise of the breath, through the resonances of a mouth that changes its shape. All curves run over the length
// of the sound.
struct Voice {
    double seconds = 0.5;
    Curve pitch = 220;  // hertz
    Curve loudness = 1; // 0 to 1
    std::vector<MouthPosition> mouth{{0, vowel::ah}};
    double tract = 1;         // factor on every resonance: 1 a man, 1.17 a woman, 1.4 a child, 0.5 a monster
    Curve breath = 0.06;      // share of breath noise: 0 none, 1 a whisper
    Curve tension = 0.5;      // of the vocal folds: 0 slack and soft, 1 pressed and bright
    double vibrato = 0;       // depth in semitones, reached a third of the way through
    double vibratoRate = 5.6; // hertz
    double roughness = 0;     // 0 smooth, 1 a growl: every other pulse weaker, all of them uneven
};

// The voice's sound with a peak of 1.
Signal sing(const Voice& voice, RandomNumbers& random);

} // namespace quiverly::clips
