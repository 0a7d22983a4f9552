#pragma once

#include <cstdint>

namespace quiverly::clips {

// The chance in a clip: equal seeds give equal numbers with every compiler, which the standard distributions do not
// promise (SplitMix64, public domain, S. Vigna). Draw into named values first, never twice in one call's arguments:
// every compiler evaluates those in an order of its own.
class Random {
public:
    explicit Random(std::uint64_t seed) : state(seed) {}

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
