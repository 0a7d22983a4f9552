#include "clips/instruments/Strings.h"

#include "clips/synthesis/Filter.h"
#include "clips/synthesis/Oscillator.h"

namespace quiverly::clips {

namespace {

constexpr int players = 5;
constexpr double playerDetuning = 0.12; // semitones at most

} // namespace

Signal bowed(double seconds, const Curve& hertz, const Curve& loudness, RandomNumbers& random) {
    Signal strings;
    for (int player = 0; player < players; ++player) {
        const double detune = semitoneRatio(random.between(-playerDetuning, playerDetuning));
        const double vibratoDepth = random.between(0.2, 0.4);
        const double vibratoRate = random.between(5, 6.5);
        add(strings, saw(seconds, hertz * detune, {vibratoDepth, vibratoRate}), 0);
    }
    add(strings, whiteNoise(seconds, random), 0, 0.04);
    Signal sound = lowPassed(strings, 3200);
    add(sound, bandPassed(strings, 480, 2), 0, 0.6);    // the air in the body
    add(sound, bandPassed(strings, 2600, 1.5), 0, 0.5); // the bridge
    return normalised(faded(std::move(sound), loudness));
}

} // namespace quiverly::clips
