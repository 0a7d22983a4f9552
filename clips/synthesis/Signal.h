#pragma once

#include <cstddef>
#include <vector>

#include "clips/synthesis/Curve.h"

namespace quiverly::clips {

constexpr double sampleRate = 48000; // of every signal and every clip, in hertz

// One channel of sound; samples lie between -1 and 1 after mastering, and may lie outside before.
using Signal = std::vector<double>;

// Both channels of a clip; always of equal length.
struct Stereo {
    Signal left;
    Signal right;
};

inline std::size_t samplesIn(double seconds) {
    return static_cast<std::size_t>(seconds * sampleRate);
}

inline double secondsOf(const Stereo& sound) {
    return static_cast<double>(sound.left.size()) / sampleRate;
}

// A signal of the given length whose samples are sampleAt(fraction of the length that has passed), called in order.
template<typename SampleAt>
Signal generated(double seconds, SampleAt sampleAt) {
    Signal signal(samplesIn(seconds));
    for (std::size_t index = 0; index < signal.size(); ++index) {
        signal[index] = sampleAt(static_cast<double>(index) / static_cast<double>(signal.size()));
    }
    return signal;
}

// Left and right in turn.
Signal interleaved(const Stereo& sound);

double peakOf(const Signal& signal);

// The same sound with a peak of 1, so that a gain means the same for every instrument; silence stays silence.
Signal normalised(Signal signal);

// The same sound, its loudness multiplied by the curve.
Signal faded(Signal signal, const Curve& loudness);

// Adds a part to a sum from a moment, in seconds, on; the sum grows as needed.
void add(Signal& sum, const Signal& part, double at, double gain = 1);

// Soft clipping: the higher the drive, the more overtones. A drive of 1 is barely audible.
Signal saturated(Signal signal, double drive);

// Makes the loudness flutter as in a growl or a purr: a depth of 0 changes nothing, one of 1 reaches silence each time.
Signal fluttered(Signal signal, const Curve& hertz, const Curve& depth);

} // namespace quiverly::clips
