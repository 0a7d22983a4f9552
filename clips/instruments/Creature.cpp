#include "clips/instruments/Creature.h"

#include "clips/synthesis/Filter.h"
#include "clips/synthesis/Oscillator.h"

namespace quiverly::clips {

namespace {

// Single impulses, `hertz` a second; unevenness (0 to 1) varies their distance and their strength.
Signal impulses(double seconds, const Curve& hertz, double unevenness, RandomNumbers& random) {
    double until = 0;
    return generated(seconds, [&](double along) {
        until -= hertz(along) / sampleRate;
        if (until > 0) return 0.0;
        until += 1 + unevenness * random.noise();
        return 1 - unevenness * random.between(0, 1);
    });
}

} // namespace

Signal croak(double seconds, const Curve& knocks, const Curve& pitch, RandomNumbers& random) {
    const Signal excitation = impulses(seconds, knocks, 0.12, random);
    Signal sound = bandPassed(excitation, pitch, 7);
    add(sound, bandPassed(excitation, pitch * 2.2, 9), 0, 0.6);
    add(sound, bandPassed(excitation, pitch * 3.7, 9), 0, 0.4);
    add(sound, lowPassed(excitation, pitch * 0.5, 2), 0, 0.5);
    const Curve envelope{{0, 0.4}, {0.12, 1}, {0.75, 0.8}, {1, 0}};
    return normalised(saturated(normalised(faded(std::move(sound), envelope)), 2.5));
}

Signal hissed(double seconds, const Curve& brightness, const Curve& loudness, RandomNumbers& random) {
    const Signal air = whiteNoise(seconds, random);
    Signal sound = bandPassed(air, brightness, 1.6);
    add(sound, bandPassed(air, brightness * 1.7, 3), 0, 0.5);
    return normalised(faded(std::move(sound), loudness));
}

Signal rattled(double seconds, const Curve& clicks, double brightness, const Curve& loudness, RandomNumbers& random) {
    const Signal excitation = impulses(seconds, clicks, 0.5, random);
    Signal sound = bandPassed(excitation, brightness, 5);
    add(sound, bandPassed(excitation, 1.9 * brightness, 8), 0, 0.7);
    return normalised(faded(saturated(normalised(std::move(sound)), 3), loudness));
}

Signal slurp(double seconds, const Curve& pitch, RandomNumbers& random) {
    Signal wet = bandPassed(whiteNoise(seconds, random), pitch, 8);
    add(wet, sine(seconds, pitch * 0.8), 0, 0.5);
    wet = fluttered(std::move(wet), {{0, 40}, {1, 90}}, 0.6);
    return normalised(faded(std::move(wet), {{0, 0.3}, {0.3, 0.8}, {0.9, 1}, {1, 0}}));
}

} // namespace quiverly::clips
