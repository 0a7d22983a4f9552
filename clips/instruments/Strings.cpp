#include "clips/instruments/Strings.h"

#include "clips/synthesis/Filter.h"
#include "clips/synthesis/Oscillator.h"

namespace quiverly::clips {

namespace {

constexpr int players = 5;
constexpr double outOfTune = 0.12; // semitones at most

} // namespace

Signal bowed(double seconds, const Gesture& hertz, const Gesture& loudness, Random& random) {
    Signal desk;
    for (int player = 0; player < players; ++player) {
        const double detuning = semitones(random.between(-outOfTune, outOfTune));
        const double vibratoDepth = random.between(0.2, 0.4);
        const double vibratoRate = random.between(5, 6.5);
        add(desk, saw(seconds, hertz * detuning, {vibratoDepth, vibratoRate}), 0);
    }
    add(desk, hiss(seconds, random), 0, 0.04);
    Signal sound = lowPassed(desk, 3200);
    add(sound, bandPassed(desk, 480, 2), 0, 0.6);    // the air in the body
    add(sound, bandPassed(desk, 2600, 1.5), 0, 0.5); // the bridge
    return normalised(faded(std::move(sound), loudness));
}

} // namespace quiverly::clips
