#pragma once

#include "synthesis/Signal.h"

namespace quiverly::clips {

// The last hand on every clip: starts it at its first audible sample, ends it in a fade where it has died away (after
// at most longestClip seconds), and brings its momentary loudness to the wanted LUFS below a ceiling that leaves the
// encoder room.
Stereo mastered(Stereo sound, double loudness);

constexpr double longestClip = 3.8; // seconds

} // namespace quiverly::clips
