#pragma once

#include <cmath>

namespace quiverly::clips {

// The ratio of two frequencies that are this many semitones apart.
inline double semitoneRatio(double count) {
    return std::exp2(count / 12);
}

// The pitch of a piano key in hertz; keys are numbered as in MIDI, where 69 is A at 440 Hz and 60 is middle C.
inline double keyPitch(double key) {
    return 440 * semitoneRatio(key - 69);
}

} // namespace quiverly::clips
