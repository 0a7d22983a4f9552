#pragma once

#include <vector>

#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

// The pitch in hertz of every moment of a clip that clearly has one, in order of time; moments without are left out.
std::vector<double> pitchTrack(const Stereo& sound);

} // namespace quiverly::clips
