#pragma once

#include <random>

namespace quiverly {

// Chance that repeats itself: the same seed, the same choices.
class VirtualRandom {
public:
    std::mt19937_64 generator{0};
};

} // namespace quiverly
