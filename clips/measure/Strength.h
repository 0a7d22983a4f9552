#pragma once

#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

// How strong a clip is, each measure by itself: most rise from the first third of a pack that escalates to the last.
struct Strength {
    double seconds;    // of the clip
    double loudness;   // greatest momentary, in LUFS
    double brightness; // the middle of its spectrum, in hertz
    double density;    // the mean number of bands (of 40, equally wide to the ear) that sound at a time
    double range;      // octaves over which its pitch travels; 0 when it has none
    double roughness;  // depth of the beats of 30 to 75 a second in its loudness: 0 smooth, 0.5 a growl
};

Strength strengthOf(const Stereo& sound);

} // namespace quiverly::clips
