#pragma once

#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

// A room around a sound, heard as its echo.
struct Room {
    double seconds;    // until the echo has fallen by 60 dB
    double brightness; // hertz above which the walls swallow sound
    double share;      // gain of the echo beside the dry sound
};

namespace room {
constexpr Room parlour{0.35, 5000, 0.16};
constexpr Room hall{1.0, 6000, 0.3};
constexpr Room cathedral{1.7, 7000, 0.5};
constexpr Room swamp{0.8, 3000, 0.16};
constexpr Room cave{1.3, 2500, 0.4};
} // namespace room

// The dry sound with its echo, which differs in left and right; longer than the sound by the room's seconds.
Stereo heardIn(const Room& room, Stereo dry);

} // namespace quiverly::clips
