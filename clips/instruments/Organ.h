#pragma once

#include <vector>

#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

// A chord of organ pipes with a peak of 1, of keys as keyPitch() counts them. The swell is the loudness of the chord;
// the brighter ranks follow it more than the others.
Signal piped(const std::vector<double>& keys, double seconds, const Curve& swell);

} // namespace quiverly::clips
