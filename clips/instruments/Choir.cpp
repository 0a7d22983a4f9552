#include "clips/instruments/Choir.h"

#include "clips/synthesis/Pitch.h"

namespace quiverly::clips {

namespace {

constexpr int singersPerKey = 3;
constexpr double outOfTune = 0.14;   // semitones at most
constexpr double outOfTime = 0.03;   // seconds at most
constexpr double highestManKey = 59; // above it women sing

} // namespace

void singTogether(Stage& stage, const std::vector<double>& keys, const Voice& manner, double at, double gain,
                  Random& random) {
    for (const double key : keys) {
        for (int singer = 0; singer < singersPerKey; ++singer) {
            Voice voice = manner;
            voice.pitch = manner.pitch * keyPitch(key + random.between(-outOfTune, outOfTune));
            voice.tract = manner.tract * (key > highestManKey ? 1.17 : 1.0) * random.between(0.97, 1.03);
            voice.vibratoRate = manner.vibratoRate * random.between(0.9, 1.1);
            const double late = random.between(0, outOfTime);
            stage.play(sing(voice, random), at + late, gain, 0.8 * (singer - 1));
        }
    }
}

} // namespace quiverly::clips
