#include "clips/instruments/Impact.h"

#include <cmath>
#include <numbers>

#include "clips/synthesis/Filter.h"
#include "clips/synthesis/Oscillator.h"

namespace quiverly::clips {

Signal thump(double hertz, double seconds) {
    const Curve fall{{0, 2.2 * hertz}, {0.15, hertz}, {1, 0.7 * hertz}};
    return normalised(faded(saturated(sine(seconds, fall), 1.5), {{0, 0}, {0.01, 1}, {0.25, 0.5}, {1, 0}}));
}

Signal smack(double hertz, double seconds, RandomNumbers& random) {
    return normalised(faded(bandPassed(whiteNoise(seconds, random), {{0, 1.6 * hertz}, {1, 0.7 * hertz}}, 1.2),
                            {{0, 1}, {0.2, 0.35}, {0.5, 0.1}, {1, 0}}));
}

Signal pop(RandomNumbers& random) {
    Signal sound = faded(sine(0.06, {{0, 320}, {0.3, 900}, {1, 1300}}), {{0, 0.6}, {0.15, 1}, {1, 0}});
    add(sound, smack(1100, 0.05, random), 0, 0.6);
    return normalised(std::move(sound));
}

Signal crash(double seconds, double brightness, RandomNumbers& random) {
    const Signal shimmer = highPassed(whiteNoise(seconds, random), brightness);
    Signal sound = faded(shimmer, {{0, 1}, {0.06, 0.55}, {0.3, 0.22}, {1, 0}});
    for (int mode = 0; mode < 24; ++mode) {
        const double hertz = brightness * random.between(0.35, 2.4);
        add(sound, faded(sine(seconds * random.between(0.4, 1), hertz), {{0, 1}, {0.25, 0.4}, {1, 0}}), 0, 0.07);
    }
    return normalised(std::move(sound));
}

Signal boing(double hertz, double seconds) {
    double carrier = 0;
    double wobble = 0;
    return normalised(generated(seconds, [&](double along) {
        wobble += (14 + 22 * along) / sampleRate;
        const double swing = 0.45 * std::exp(-3 * along) * std::sin(2 * std::numbers::pi * wobble);
        carrier += hertz * (1 + swing) * (1 - 0.25 * along) / sampleRate;
        const double angle = 2 * std::numbers::pi * carrier;
        const double twang = std::sin(angle + 1.8 * std::exp(-4 * along) * std::sin(3.01 * angle));
        return twang * std::exp(-4 * along) * (1 - along);
    }));
}

} // namespace quiverly::clips
