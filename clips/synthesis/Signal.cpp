#include "clips/synthesis/Signal.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quiverly::clips {

Signal interleaved(const Stereo& sound) {
    Signal frames(2 * sound.left.size());
    for (std::size_t index = 0; index < sound.left.size(); ++index) {
        frames[2 * index] = sound.left[index];
        frames[2 * index + 1] = sound.right[index];
    }
    return frames;
}

double peakOf(const Signal& signal) {
    double peak = 0;
    for (const double sample : signal) peak = std::max(peak, std::abs(sample));
    return peak;
}

Signal normalised(Signal signal) {
    const double peak = peakOf(signal);
    if (peak > 0) {
        for (double& sample : signal) sample /= peak;
    }
    return signal;
}

Signal faded(Signal signal, const Curve& loudness) {
    for (std::size_t index = 0; index < signal.size(); ++index) {
        signal[index] *= loudness(static_cast<double>(index) / static_cast<double>(signal.size()));
    }
    return signal;
}

void add(Signal& sum, const Signal& part, double at, double gain) {
    const std::size_t start = samplesIn(at);
    sum.resize(std::max(sum.size(), start + part.size()));
    for (std::size_t index = 0; index < part.size(); ++index) sum[start + index] += gain * part[index];
}

Signal saturated(Signal signal, double drive) {
    for (double& sample : signal) sample = std::tanh(drive * sample);
    return signal;
}

Signal fluttered(Signal signal, const Curve& hertz, const Curve& depth) {
    double phase = 0;
    for (std::size_t index = 0; index < signal.size(); ++index) {
        const double along = static_cast<double>(index) / static_cast<double>(signal.size());
        phase += hertz(along) / sampleRate;
        signal[index] *= 1 - depth(along) * (0.5 - 0.5 * std::cos(2 * std::numbers::pi * phase));
    }
    return signal;
}

} // namespace quiverly::clips
