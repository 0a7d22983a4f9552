#include "clips/instruments/Voice.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "clips/instruments/Resonance.h"
#include "clips/synthesis/Filter.h"
#include "clips/synthesis/Oscillator.h"
#include "clips/synthesis/Vibrato.h"

namespace quiverly::clips {

namespace {

constexpr std::size_t retuneEvery = 32; // samples
constexpr double edgeHertz = 1400;      // tension brings out what lies above,
constexpr double edgeAtMost = 7;        // with this gain at full tension

// The vocal folds: one pulse of air flow per period, as its derivative, which is what the lips radiate.
class Folds {
public:
    Folds(double roughness, RandomNumbers& random) : roughness(roughness), random(random) {}

    // The next sample; openness() then tells how far the folds are apart.
    double operator()(double hertz, double tension) {
        const double step = std::clamp(hertz * timing / sampleRate, 1e-5, 0.25);
        phase += step;
        if (phase >= 1) {
            phase -= 1;
            startPulse();
        }
        const double openPart = 0.75 - 0.3 * tension;
        const double opened = phase / openPart;
        const double sinceClosing = std::fmod(phase - openPart + 1, 1);
        opening = opened < 1 ? 6.75 * opened * opened * (1 - opened) : 0;
        const double flow = opened < 1 ? 2 * opened - 3 * opened * opened : 0;
        return strength * (flow + smoothedJump(sinceClosing, step));
    }

    double openness() const { return opening; }

private:
    static constexpr double jitter = 0.006; // of one period, as in a healthy voice

    void startPulse() {
        weak = !weak;
        timing = 1 + (jitter + 0.12 * roughness) * random.noise();
        strength = (weak ? 1 - 0.55 * roughness : 1) * (1 + 0.25 * roughness * random.noise());
    }

    double roughness;
    RandomNumbers& random;
    double phase = 0;
    double timing = 1;
    double strength = 1;
    double opening = 0;
    bool weak = false;
};

// The row of resonances from the throat to the lips.
class Tract {
public:
    explicit Tract(double scale) : scale(scale) {}

    // As singers do, the mouth opens with the pitch, so that its first resonance never lies below the note (J.
    // Sundberg, "The Science of the Singing Voice", 1987).
    void shape(const std::array<double, 3>& formants, double pitch) {
        for (std::size_t index = 0; index < resonances.size(); ++index) {
            // Above the third they are those of a plain tube: one every 1000 Hz.
            const double hertz = scale * (index < 3 ? formants[index] : 500 + 1000 * static_cast<double>(index));
            const double least = index == 0 ? pitch : 0;
            const double opened = hertz < least ? 3 : 1; // a mouth this wide open rings less
            const double width = scale * 50 + 0.03 * hertz + 8e-6 * hertz * hertz / scale;
            resonances[index].tune(std::clamp(hertz, least, 0.48 * sampleRate), opened * width);
        }
    }

    double operator()(double sample) {
        for (Resonance& resonance : resonances) sample = resonance(sample);
        return sample;
    }

private:
    double scale;
    std::array<Resonance, 9> resonances;
};

// Takes back most of what vowel and pitch do to the loudness, as singers do, so that the sound follows the curve of
// loudness that is applied next.
Signal evened(Signal sound) {
    constexpr double followHertz = 12;
    constexpr double share = 0.6;
    const double following = 1 - std::exp(-2 * std::numbers::pi * followHertz / sampleRate);
    const double rest = 0.02 * peakOf(sound);
    double power = rest * rest;
    for (double& sample : sound) {
        power += following * (sample * sample - power);
        sample /= std::pow(std::sqrt(power) + rest, share);
    }
    return normalised(std::move(sound));
}

} // namespace

Signal sing(const Voice& voice, RandomNumbers& random) {
    Folds folds(voice.roughness, random);
    Tract tract(voice.tract);
    Filter tilt;
    Filter edge;
    edge.tune(edgeHertz, 0.6);
    std::size_t sampleIndex = 0;
    Vibrato vibrato(voice.vibrato, voice.vibratoRate);
    Signal sound = generated(voice.seconds, [&](double along) {
        const double tension = voice.tension(along);
        if (sampleIndex++ % retuneEvery == 0) {
            tract.shape(formantsAt(voice.mouth, along), voice.pitch(along));
            tilt.tune(1400 * std::exp2(3.3 * tension), 0.7);
        }
        const double soft = tilt(folds(voice.pitch(along) * vibrato(along), tension)).low;
        const double pulses = soft + edgeAtMost * tension * tension * edge(soft).high;
        const double breath = voice.breath(along);
        const double air = 0.5 * breath * random.noise() * (0.5 + 0.5 * folds.openness());
        return tract((1 - breath) * pulses + air);
    });
    return normalised(faded(evened(std::move(sound)), voice.loudness));
}

} // namespace quiverly::clips
