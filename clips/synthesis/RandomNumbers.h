#pragma once

#include <cstdint>

namespace quiverly::clips {

// Random numbers of a clip (SplitMix64, public domain, S. Vigna). Equal seeds give equal numbers with every compiler,
// which the standard distributions do not promise. Never draw twice in the arguments of one call, for compilers
// evaluate them in different orders; draw into named values first.
class RandomNumbers {
public:
    explicit RandomNumbers(std::uint64_t seed) : state(seed) {}

    double between(double least, double most) { return least + (most - least) * fraction(); }
    double noise() { return between(-1, 1); }

private:
    double fraction() {
        state += 0x9e3779b97f4a7c15;
        std::uint64_t mixed = state;
        mixed = (mixed ^ (mixed >> 30)) * 0xbf58476d1ce4e5b9;
        mixed = (mixed ^ (mixed >> 27)) * 0x94d049bb133111eb;
        return static_cast<double>((mixed ^ (mixed >> 31)) >> 11) * 0x1p-53;
    }

    std::uint64_t state;
};

} // namespace quiverly::clips
