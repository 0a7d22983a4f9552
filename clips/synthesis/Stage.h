#pragma once

#include "clips/synthesis/Room.h"
#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

// Where the sounds of one clip are mixed.
class Stage {
public:
    // Adds a sound from the second `at` on. Place -1 is far left, 0 the middle, 1 far right; the sound is equally loud
    // everywhere.
    Stage& play(const Signal& signal, double at = 0, double gain = 1, double place = 0);

    // The mix as it is heard in a room.
    Stereo in(const Room& room) const { return heardIn(room, sound); }

private:
    Stereo sound;
};

} // namespace quiverly::clips
