#include "clips/instruments/Choir.h"

#include "clips/synthesis/Tuning.h"

namespace quiverly::clips {

namespace {

constexpr int singersPerKey = 3;
constexpr double singerDetuning = 0.14; // semitones at most
constexpr double singerDelay = 0.03;    // seconds at most
constexpr double highestMansKey = 59;   // women sing the keys above

} // namespace

void singTogether(Stage& stage, const std::vector<double>& keys, const Voice& model, double at, double gain,
                  RandomNumbers& random) {
    for (const double key : keys) {
        for (int singer = 0; singer < singersPerKey; ++singer) {
            Voice voice = model;
            voice.pitch = model.pitch * keyPitch(key + random.between(-singerDetuning, singerDetuning));
            voice.tract = model.tract * (key > highestMansKey ? 1.17 : 1.0) * random.between(0.97, 1.03);
            voice.vibratoRate = model.vibratoRate * random.between(0.9, 1.1);
            const double late = random.between(0, singerDelay);
            stage.play(sing(voice, random), at + late, gain, 0.8 * (singer - 1));
        }
    }
}

} // namespace quiverly::clips
