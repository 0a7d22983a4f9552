#pragma once

#include <string>

#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

// How a line is spoken, in the scales of the synthesiser.
struct Manner {
    int wordsPerMinute = 170;
    int pitch = 50;  // 0 to 99
    int range = 100; // of the melody, in percent: 10 is monotone, 200 is excited
};

// A few words (plain text, no markup) spoken by a British voice of the program espeak-ng, with a peak of 1. Every line
// gets a process of its own: within one, what was spoken before changes what comes after. Throws std::runtime_error
// when the program is missing, fails or does not answer.
Signal spoken(const std::string& words, const Manner& manner);

} // namespace quiverly::clips
