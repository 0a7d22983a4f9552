#pragma once

#include <cmath>

namespace quiverly::clips {

// The frequency ratio of so many semitones.
inline double semitones(double count) {
    return std::exp2(count / 12);
}

// The pitch of a key of the piano, in hertz: 69 is the tuning A, 60 the middle C.
inline double keyPitch(double key) {
    return 440 * semitones(key - 69);
}

} // namespace quiverly::clips
