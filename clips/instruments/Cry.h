#pragma once

#include <string>
#include <vector>

#include "clips/instruments/MouthShape.h"
#include "clips/synthesis/RandomNumbers.h"
#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

// A person with a throat of their own. Factors are those of a grown man of middle age.
struct Speaker {
    std::string name;
    double low;            // factor on the first resonance of every mouth shape,
    double middle;         // on the second,
    double high;           // and on all above, which tells how long the vocal tract is
    double rd = 1;         // how the folds close when the voice is neither pressed nor breathy, as Glottis counts
    double breath = 1;     // factor on the noise of the breath
    double jitter = 0.012; // of each period
    double shimmer = 0.06; // of each pulse
    double width = 1;      // factor on the width of every resonance
};

// One breath of a person who cries out, groans, hums or laughs: breath is heard first, the folds start to swing, and
// breath follows. Curves run over the length of the voice, without the breath.
struct Cry {
    Speaker speaker;
    double seconds = 0.4; // of voice
    Curve pitch = 220;    // hertz
    Curve loudness{{0, 0.15}, {0.2, 1}, {0.55, 0.6}, {1, 0.02}};
    std::vector<MouthPosition> mouth{{0, vowel::ah}};
    Curve press = 0.6;     // 0 breathy, 0.5 as the speaker talks, 1 pressed
    Curve air = 1;         // factor on the speaker's breath while the folds swing
    double before = 0.035; // seconds of breath
    double after = 0.13;
    double doubling = 0; // of every other period, as in a man's scream: 0 none, 1 as if an octave lower
    double rasp = 0;     // of the false folds, which beat 30 to 75 times a second: 0 none, 1 full
    double drift = 1;    // factor on how far the mouth wanders
};

// The cry, with a peak of 1.
Signal cried(const Cry& cry, RandomNumbers& random);

} // namespace quiverly::clips
