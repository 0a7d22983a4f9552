#pragma once

#include <string>

#include <tl/expected.hpp>

#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

// How a line is spoken, in the units of espeak-ng.
struct SpeechStyle {
    int wordsPerMinute = 170;
    int pitch = 50;  // 0 to 99
    int range = 100; // of the melody, in percent: 10 is monotone, 200 is excited
};

// A few words (plain text, no markup) spoken by espeak-ng in British English, with a peak of 1. Every line gets a
// process of its own: within one, what was spoken before changes what comes after. Fails when the program is missing,
// fails or does not answer within half a minute.
tl::expected<Signal, std::string> spoken(const std::string& words, const SpeechStyle& style);

} // namespace quiverly::clips
