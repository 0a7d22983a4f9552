#include "clips/instruments/Lips.h"

#include "clips/instruments/Impact.h"
#include "clips/synthesis/Filter.h"
#include "clips/synthesis/Oscillator.h"

namespace quiverly::clips {

Signal kiss(double seconds, RandomNumbers& random) {
    const double sucking = 0.75 * seconds;
    const Curve tightening{{0, 900}, {0.7, 1900}, {1, 3400}};
    const Curve growing{{0, 0.06}, {0.75, 0.5}, {0.97, 1}, {1, 0}};
    Signal sound = faded(bandPassed(whiteNoise(sucking, random), tightening, 9), growing);
    const Signal squeak = fluttered(sine(sucking, tightening * 0.72), {{0, 38}, {1, 95}}, 0.9);
    add(sound, faded(squeak, growing), 0, 0.25);
    add(sound, smack(2100, 0.25 * seconds + 0.03, random), sucking, 0.7);
    add(sound, thump(420, 0.05), sucking, 0.5);
    return normalised(std::move(sound));
}

Signal whistle(double seconds, const Curve& hertz, const Curve& loudness, RandomNumbers& random) {
    Signal sound = sine(seconds, hertz);
    add(sound, sine(seconds, hertz * 2), 0, 0.04);
    add(sound, bandPassed(whiteNoise(seconds, random), hertz, 12), 0, 0.12);
    return normalised(faded(std::move(sound), loudness));
}

} // namespace quiverly::clips
