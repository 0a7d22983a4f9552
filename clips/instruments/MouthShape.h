#pragma once

#include <array>
#include <vector>

namespace quiverly::clips {

// A shape of the mouth, as the resonances that it gives a grown man's vocal tract: hertz, lowest first.
struct MouthShape {
    std::array<double, 3> formants;
};

// A shape at some moment of a sound. Between two of them the mouth moves steadily.
struct MouthPosition {
    double at; // fraction of the sound that has passed
    MouthShape shape;
};

// Where the resonances are when that fraction of the sound has passed, in hertz. There is at least one position.
std::array<double, 3> formantsAt(const std::vector<MouthPosition>& mouth, double along);

// Means over 33 men of G. Peterson and H. Barney, "Control Methods Used in a Study of the Vowels", 1952.
namespace vowel {
constexpr MouthShape ee{{270, 2290, 3010}};
constexpr MouthShape ih{{390, 1990, 2550}};
constexpr MouthShape eh{{530, 1840, 2480}};
constexpr MouthShape ae{{660, 1720, 2410}};
constexpr MouthShape ah{{730, 1090, 2440}};
constexpr MouthShape aw{{570, 840, 2410}};
constexpr MouthShape oo{{300, 870, 2240}};
constexpr MouthShape uh{{640, 1190, 2390}};
constexpr MouthShape er{{490, 1350, 1690}};
constexpr MouthShape a{{720, 1450, 2450}}; // halfway between ae and ah: the open mouth of a cry
} // namespace vowel

// Those that a voice can hold. From D. Klatt, "Software for a cascade/parallel formant synthesizer", 1980.
namespace consonant {
constexpr MouthShape w{{290, 610, 2150}};
constexpr MouthShape y{{260, 2070, 3020}};
constexpr MouthShape r{{310, 1060, 1380}};
constexpr MouthShape l{{310, 1050, 2880}};
constexpr MouthShape m{{270, 1270, 2130}};
} // namespace consonant

} // namespace quiverly::clips
