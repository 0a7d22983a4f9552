#include "clips/synthesis/Oscillator.h"

#include <cmath>
#include <numbers>

namespace quiverly::clips {

Signal sine(double seconds, const Curve& hertz) {
    double phase = 0;
    return generated(seconds, [&](double along) {
        phase += hertz(along) / sampleRate;
        return std::sin(2 * std::numbers::pi * phase);
    });
}

Signal saw(double seconds, const Curve& hertz, Vibrato vibrato) {
    double phase = 0;
    return generated(seconds, [&](double along) {
        const double step = hertz(along) * vibrato(along) / sampleRate;
        phase = std::fmod(phase + step, 1);
        return 2 * phase - 1 - 2 * smoothedJump(phase, step);
    });
}

Signal whiteNoise(double seconds, RandomNumbers& random) {
    return generated(seconds, [&](double) { return random.noise(); });
}

double smoothedJump(double phase, double step) {
    if (phase < step) {
        const double since = phase / step - 1;
        return -0.5 * since * since;
    }
    if (phase > 1 - step) {
        const double until = (phase - 1) / step + 1;
        return 0.5 * until * until;
    }
    return 0;
}

} // namespace quiverly::clips
