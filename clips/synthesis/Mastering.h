#pragma once

#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

// The last step for every clip: cuts it to start at its first audible sample and to end in a fade where it has died
// away (at the latest after 3.8 seconds), and brings its momentary loudness to the given LUFS while its peaks stay
// below a ceiling that leaves headroom to the encoder.
Stereo mastered(Stereo sound, double loudness);

} // namespace quiverly::clips
