#include "clips/instruments/Cry.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "clips/instruments/Glottis.h"
#include "clips/instruments/Resonance.h"
#include "clips/synthesis/Filter.h"

namespace quiverly::clips {

namespace {

constexpr std::size_t tuneEvery = 8; // samples
constexpr double airHertz = 2500;    // above it the breath of a voice is heard rather than its harmonics
constexpr double airBesideVoice = 0.25;
constexpr double airAlone = 0.09;
constexpr double hissShare = 0.65; // of the breath that sounds between the teeth, past the resonances

// A number that wanders: every 60 to 120 ms it makes for a new target around 0, at the speed at which tongue and jaw
// move (B. Lindblom, "Spectrographic study of vowel reduction", 1963).
class Wander {
public:
    explicit Wander(RandomNumbers& random) : random(random), from(random.noise()), to(random.noise()) {}

    double next(double seconds) {
        passed += seconds;
        if (passed >= lasts) {
            passed = 0;
            lasts = random.between(0.06, 0.12);
            from = to;
            to = random.noise();
        }
        return from + (to - from) * (0.5 - 0.5 * std::cos(std::numbers::pi * passed / lasts));
    }

private:
    RandomNumbers& random;
    double from;
    double to;
    double passed = 0;
    double lasts = 0.09;
};

// The vocal folds, cycle by cycle. Cycles differ in length and strength, and with doubling every other one is late and
// weak (I. Titze, "Principles of Voice Production", 1994, on subharmonics).
class CryFolds {
public:
    CryFolds(const Speaker& speaker, double doubling, RandomNumbers& random)
        : speaker(speaker), doubling(doubling), random(random) {}

    double operator()(double hertz, double press) {
        phase += hertz * timing / sampleRate;
        if (phase >= 1) {
            phase = std::fmod(phase, 1);
            startCycle(press);
        }
        return strength * cycle->flowDerivative(phase);
    }

    double openness() const { return cycle->openness(phase); }

private:
    void startCycle(double press) {
        late = !late;
        const double sway = late ? 1 : -1;
        timing = 1 + 0.85 * speaker.jitter * random.noise() + 0.12 * doubling * sway;
        strength = (1 + 0.85 * speaker.shimmer * random.noise()) * (late ? 1 - 0.5 * doubling : 1);
        // From pressed to breathy Rd grows about fivefold around the speaker's own.
        cycle = &glottisFor(speaker.rd * std::exp2(2.4 * (0.5 - press) + 0.15 * random.noise()));
    }

    const Speaker& speaker;
    double doubling;
    RandomNumbers& random;
    const Glottis* cycle = &glottisFor(1);
    double phase = 0;
    double timing = 1;
    double strength = 1;
    bool late = false;
};

// The resonances from the throat to the lips.
class CryTract {
public:
    CryTract(const Cry& cry, RandomNumbers& random)
        : cry(cry), wander{Wander(random), Wander(random), Wander(random)} {}

    // Louder speech opens the mouth (J. Lienard, M. Di Benedetto, "Effect of vocal effort on spectral properties of
    // vowels", 1999), and its first resonance stays above the pitch. While the folds are open the throat behind them
    // takes part: resonances are wider, the first one by far (G. Fant, "Some problems in voice source analysis", 1993).
    void shape(double along, double pitch, double loudness, double openness) {
        const Speaker& speaker = cry.speaker;
        const std::array<double, 3> factors{speaker.low * (0.95 + 0.25 * loudness), speaker.middle, speaker.high};
        constexpr std::array<double, 3> reach{0.19, 0.16, 0.07};
        constexpr std::array<double, 3> opening{2.2, 0.8, 0.5};
        const std::array<double, 3> formants = formantsAt(cry.mouth, along);
        const double seconds = tuneEvery / sampleRate;
        for (std::size_t index = 0; index < resonances.size(); ++index) {
            // Above the third they are those of a plain tube: one every 1000 Hz.
            double hertz = speaker.high * (500 + 1000 * static_cast<double>(index));
            double width = 60 + 0.05 * hertz;
            if (index < 3) {
                const double drifted = 1 + cry.drift * reach[index] * wander[index].next(seconds);
                hertz = formants[index] * factors[index] * drifted;
                width = (index == 0 ? 120 + 0.1 * hertz : 50 + 0.05 * hertz) * (1 + opening[index] * openness);
            }
            if (index == 0) hertz = std::max(hertz, 1.05 * pitch);
            resonances[index].tune(std::min(hertz, 0.45 * sampleRate), speaker.width * width);
        }
    }

    double operator()(double sample) {
        for (Resonance& resonance : resonances) sample = resonance(sample);
        return sample;
    }

private:
    const Cry& cry;
    std::array<Wander, 3> wander;
    std::array<Resonance, 8> resonances;
};

// The breath around the voice: it swells before the folds start and dies away after them.
double breathAt(double time, const Cry& cry) {
    const double since = time - cry.before - cry.seconds;
    if (time < cry.before) return 0.5 + 0.5 * time / cry.before;
    if (since < -0.25 * cry.seconds) return std::max(0.0, 1 - (time - cry.before) / 0.04);
    if (since < 0) return 1 + since / (0.25 * cry.seconds);
    const double left = 1 - since / cry.after;
    return left * left;
}

} // namespace

Signal cried(const Cry& cry, RandomNumbers& random) {
    CryFolds folds(cry.speaker, cry.doubling, random);
    CryTract tract(cry, random);
    Wander wavering(random);
    Wander beating(random);
    Filter air;
    air.tune(airHertz, 0.6);
    std::size_t sampleIndex = 0;
    double beat = 0;
    double waver = 0;
    const double seconds = cry.before + cry.seconds + cry.after;
    return normalised(generated(seconds, [&](double share) {
        const double time = share * seconds;
        const double along = (time - cry.before) / cry.seconds;
        const bool voiced = along >= 0 && along < 1;
        const double loudness = voiced ? cry.loudness(along) : 0;
        const double pitch = cry.pitch(along) * (1 + 0.012 * waver);
        const double press = std::clamp(cry.press(along) - 0.35 * (1 - loudness), 0.0, 1.0);
        const double flow = folds(pitch, press);
        const double openness = voiced ? folds.openness() : 0.7;
        if (sampleIndex++ % tuneEvery == 0) {
            const double step = tuneEvery / sampleRate;
            waver = wavering.next(step);
            beat += (50 + 18 * beating.next(step)) * step;
            tract.shape(along, voiced ? pitch : 0, loudness, openness);
        }
        const double rasp = 1 - 0.85 * cry.rasp * (0.5 - 0.5 * std::cos(2 * std::numbers::pi * beat));
        const double noise = random.noise();
        const double high = air(noise).high;
        const double gated =
            airBesideVoice * cry.air(along) * loudness * (0.15 + 0.85 * openness) * (high + 0.12 * noise);
        const double alone = airAlone * breathAt(time, cry) * (0.6 * high + 0.4 * noise);
        const double breathed = cry.speaker.breath * (gated + alone);
        return rasp * (tract(loudness * flow + breathed) + hissShare * breathed);
    }));
}

} // namespace quiverly::clips
