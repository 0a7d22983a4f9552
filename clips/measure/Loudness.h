#pragma once

#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

// Greatest momentary loudness (400 ms windows, ITU-R BS.1770) in LUFS; silence follows a shorter sound.
double momentaryLoudness(const Stereo& sound);

// Greatest true peak of both channels (ITU-R BS.1770) in dBTP.
double truePeak(const Stereo& sound);

} // namespace quiverly::clips
