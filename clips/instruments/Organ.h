#pragma once

#include <vector>

#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

// A chord of organ pipes, a peak of 1. The swell, a gesture of loudness, also opens the brighter ranks.
Signal piped(const std::vector<double>& keys, double seconds, const Gesture& swell);

} // namespace quiverly::clips
