#pragma once

#include "synthesis/Signal.h"

namespace quiverly::clips {

// How strong a clip is: what rises from the first to the last clip of a pack that escalates.
struct Strength {
    double seconds;    // of the clip
    double loudness;   // greatest momentary, in LUFS
    double brightness; // the middle of its spectrum, in hertz
    double density;    // the mean number of bands (of 40, equally wide to the ear) that sound at a time
    double range;      // octaves over which its pitch travels; 0 when it has none

    // All of them in one number, in which every part counts by its doublings: a clip twice as long, or filling twice
    // as many bands, is stronger by one; one twice as bright, reaching two octaves further, or louder by 3 LU, by a
    // half.
    double points() const;
};

Strength strengthOf(const Stereo& sound);

} // namespace quiverly::clips
