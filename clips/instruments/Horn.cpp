#include "clips/instruments/Horn.h"

#include "clips/synthesis/Filter.h"
#include "clips/synthesis/Oscillator.h"

namespace quiverly::clips {

namespace {

constexpr double vibratoRate = 5.2; // hertz
constexpr double growlRate = 31;    // hertz
constexpr double air = 0.05;        // share of breath noise

} // namespace

Signal blown(const Horn& horn, RandomNumbers& random) {
    Signal buzz = saw(horn.seconds, horn.pitch, {horn.vibrato, vibratoRate});
    add(buzz, whiteNoise(horn.seconds, random), 0, air);
    buzz = fluttered(std::move(buzz), growlRate, 0.7 * horn.growl);
    Signal sound = lowPassed(buzz, horn.openness, 1.2);
    add(sound, bandPassed(buzz, horn.body, 2.5), 0, 0.8);
    add(sound, bandPassed(buzz, 2.3 * horn.body, 3), 0, 0.4);
    sound = saturated(normalised(std::move(sound)), 1 + 2 * horn.growl);
    return normalised(faded(std::move(sound), horn.loudness));
}

} // namespace quiverly::clips
