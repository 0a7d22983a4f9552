#include "clips/instruments/Organ.h"

#include "clips/synthesis/Oscillator.h"

namespace quiverly::clips {

namespace {

struct Rank {
    double ratio; // to the key's pitch
    double gain;
};

constexpr Rank softRanks[] = {{0.5, 0.5}, {1, 1}, {2, 0.5}};
constexpr Rank brightRanks[] = {{3, 0.6}, {4, 0.7}, {6, 0.45}, {8, 0.4}, {12, 0.2}};

} // namespace

Signal piped(const std::vector<double>& keys, double seconds, const Curve& swell) {
    Signal soft;
    Signal bright;
    for (const double key : keys) {
        for (const Rank& rank : softRanks) add(soft, sine(seconds, rank.ratio * keyPitch(key)), 0, rank.gain);
        for (const Rank& rank : brightRanks) {
            // The higher the rank, the further out of tune, as in an organ: the ranks shimmer.
            add(bright, sine(seconds, rank.ratio * keyPitch(key + 0.01 * rank.ratio)), 0, rank.gain);
        }
    }
    add(soft, faded(std::move(bright), swell), 0);
    return normalised(faded(std::move(soft), swell));
}

} // namespace quiverly::clips
