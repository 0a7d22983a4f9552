#pragma once

#include <array>

namespace quiverly::clips {

// A shape of the mouth: the resonances of a grown man's vocal tract, in hertz, lowest first.
struct Vowel {
    std::array<double, 3> formants;
};

// Means over 33 men of G. Peterson and H. Barney, "Control Methods Used in a Study of the Vowels", 1952.
namespace vowel {
constexpr Vowel ee{{270, 2290, 3010}};
constexpr Vowel ih{{390, 1990, 2550}};
constexpr Vowel eh{{530, 1840, 2480}};
constexpr Vowel ae{{660, 1720, 2410}};
constexpr Vowel ah{{730, 1090, 2440}};
constexpr Vowel aw{{570, 840, 2410}};
constexpr Vowel oo{{300, 870, 2240}};
constexpr Vowel uh{{640, 1190, 2390}};
constexpr Vowel er{{490, 1350, 1690}};
} // namespace vowel

// Consonants that a voice can hold, from D. Klatt, "Software for a cascade/parallel formant synthesizer", 1980.
namespace vowel {
constexpr Vowel w{{290, 610, 2150}};
constexpr Vowel y{{260, 2070, 3020}};
constexpr Vowel r{{310, 1060, 1380}};
constexpr Vowel l{{310, 1050, 2880}};
constexpr Vowel m{{270, 1270, 2130}};
} // namespace vowel

} // namespace quiverly::clips
