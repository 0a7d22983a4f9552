#pragma once

#include <vector>

#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

// One of the ways in which a struck body rings.
struct VibrationMode {
    double ratio; // of its frequency to the body's
    double gain;
    double seconds; // until it has fallen by 60 dB
};

using Body = std::vector<VibrationMode>;

// Bodies by their measured modes: N. Fletcher and T. Rossing, "The Physics of Musical Instruments", 1998.
namespace body {
extern const Body churchBell;
extern const Body glass;
extern const Body bar;  // a bar of metal, as in a glockenspiel
extern const Body wood; // a hollow log, or a head
extern const Body pan;
extern const Body drum; // a kettledrum
} // namespace body

// The sound of a body struck once, with a peak of 1. The hardness of the stick, 0 to 1, brings out the high modes; the
// length is a factor on how long each mode rings.
Signal struck(const Body& body, double hertz, double hardness = 0.5, double length = 1);

} // namespace quiverly::clips
