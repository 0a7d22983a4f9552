#pragma once

#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

// How strong a clip is: what rises from the first to the last clip of a pack that escalates.
struct Strength {
    double seconds;    // of the clip
    double loudness;   // greatest momentary, in LUFS
    double brightness; // the middle of its spectrum, in hertz
    double density;    // the mean number of bands (of 40, equally wide to the ear) that sound at a time
    double range;      // octaves over which its pitch travels; 0 when it has none

    // All of them in one number, on a logarithmic scale. A clip is stronger by one when it is
    // twice as long, fills four times as many bands, reaches four octaves further or is louder by 6 LU; by 0.3 when it
    // is twice as bright, up to 1000 Hz, beyond which a sound grows thinner rather than stronger.
    double points() const;
};

Strength strengthOf(const Stereo& sound);

} // namespace quiverly::clips
