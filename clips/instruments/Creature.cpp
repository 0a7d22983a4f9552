#include "clips/instruments/Creature.h"

#include <algorithm>
#include <cmath>

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

// Noise that each impulse sets off and that dies away with the given time constant in seconds.
Signal bursts(const Signal& excitation, double fading, RandomNumbers& random) {
    const double each = std::exp(-1 / (fading * sampleRate));
    double level = 0;
    Signal sound(excitation.size());
    for (std::size_t index = 0; index < sound.size(); ++index) {
        level = std::max(level * each, excitation[index]);
        sound[index] = level * random.noise();
    }
    return sound;
}

} // namespace

Signal croak(double seconds, const Curve& knocks, const Curve& pitch, RandomNumbers& random) {
    const Signal excitation = impulses(seconds, knocks, 0.18, random);
    Signal sound = bandPassed(excitation, pitch, 11);
    add(sound, bandPassed(excitation, pitch * 1.47, 14), 0, 0.7);
    add(sound, bandPassed(excitation, pitch * 2.09, 14), 0, 0.6);
    add(sound, bandPassed(excitation, pitch * 3.31, 9), 0, 0.6);
    sound = normalised(std::move(sound));
    add(sound, normalised(bandPassed(bursts(excitation, 0.004, random), 4200, 1)), 0, 0.15);
    const Curve envelope{{0, 0.5}, {0.12, 1}, {0.75, 0.8}, {1, 0}};
    return normalised(saturated(normalised(faded(std::move(sound), envelope)), 2.5));
}

Signal growled(const Growl& growl, RandomNumbers& random) {
    const Signal excitation = impulses(growl.seconds, growl.beats, 0.15 + 0.35 * growl.roughness, random);
    Signal air = bursts(excitation, 0.35 / growl.beats(0.5), random);
    add(air, excitation, 0, 4);
    add(air, whiteNoise(growl.seconds, random), 0, 0.1);
    Signal sound = normalised(bandPassed(excitation, growl.gape * growl.body, 4));
    double gain = 0.5;
    for (const double ratio : {1.0, 2.6, 5.9, 9.7, 17.0}) {
        add(sound, normalised(bandPassed(air, growl.gape * growl.body * ratio, 1.3)), 0, gain);
        gain *= 0.8;
    }
    sound = saturated(normalised(std::move(sound)), 1.5 + growl.roughness);
    sound = fluttered(std::move(sound), growl.beats, 0.95 * growl.roughness);
    return normalised(faded(std::move(sound), growl.loudness));
}

Signal chirped(double seconds, const Curve& pitch, double roughness, RandomNumbers& random) {
    Signal sound = sine(seconds, pitch);
    add(sound, sine(seconds, pitch * 1.37), 0, 0.5);
    add(sound, sine(seconds, pitch * 2.23), 0, 0.35);
    add(sound, bandPassed(whiteNoise(seconds, random), pitch * 1.8, 1.5), 0, 0.4 + roughness);
    sound = fluttered(std::move(sound), 48, roughness);
    return normalised(faded(saturated(std::move(sound), 1.5), {{0, 0.5}, {0.2, 1}, {0.6, 0.6}, {1, 0}}));
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

} // namespace quiverly::clips
