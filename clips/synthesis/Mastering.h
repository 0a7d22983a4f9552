#pragma once

#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

// The last hand on every clip: starts it at its first audible sample, ends it in a fade where it has died away (at the
// latest after 3.8 seconds), and brings its momentary loudness to the wanted LUFS below a ceiling that leaves the
// encoder room.
Stereo mastered(Stereo sound, double loudness);

} // namespace quiverly::clips
