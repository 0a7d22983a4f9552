#pragma once

#include "clips/synthesis/Room.h"
#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

// Where the sounds of one clip are put together: each enters at its second, from its place between left and right.
class Stage {
public:
    // Place -1 is far left, 0 the middle, 1 far right; the sound is equally loud everywhere.
    Stage& play(const Signal& signal, double at = 0, double gain = 1, double place = 0);

    Stereo in(const Room& room) const { return heardIn(room, sound); }

private:
    Stereo sound;
};

} // namespace quiverly::clips
