#pragma once

#include <cstddef>
#include <vector>

#include "clips/synthesis/Gesture.h"

namespace quiverly::clips {

constexpr double sampleRate = 48000; // of every signal and every clip, in hertz

// One channel of sound: samples from -1 to 1 once it is mastered, of any size before.
using Signal = std::vector<double>;

// Both channels of a clip; always of equal length.
struct Stereo {
    Signal left;
    Signal right;
};

inline std::size_t samplesIn(double seconds) {
    return static_cast<std::size_t>(seconds * sampleRate);
}

// A signal of the given length whose samples are shape(fraction of the length that has passed).
template<typename Shape>
Signal shaped(double seconds, Shape shape) {
    Signal signal(samplesIn(seconds));
    for (std::size_t index = 0; index < signal.size(); ++index) {
        signal[index] = shape(static_cast<double>(index) / static_cast<double>(signal.size()));
    }
    return signal;
}

// Left and right in turn.
Signal interleaved(const Stereo& sound);

double peakOf(const Signal& signal);

// The same sound with a peak of 1, so that gains mean the same for every instrument; silence stays silence.
Signal normalised(Signal signal);

// The same sound with its loudness following the gesture.
Signal faded(Signal signal, const Gesture& loudness);

// Adds a sound to another from the given second on, making the other longer where needed.
void add(Signal& sum, const Signal& part, double at, double gain = 1);

// Soft clipping: the harder the drive, the more overtones. A drive of 1 is barely heard.
Signal saturated(Signal signal, double drive);

// Makes the loudness flutter as in a growl or a purr: depth 0 leaves it alone, 1 closes it wholly each time.
Signal fluttered(Signal signal, const Gesture& hertz, const Gesture& depth);

} // namespace quiverly::clips
