#include "clips/measure/PitchTrack.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "clips/synthesis/Filter.h"

namespace quiverly::clips {

namespace {

constexpr std::size_t thinningFactor = 4; // of samples: 12 kHz is enough for pitches
constexpr double thinRate = sampleRate / thinningFactor;
constexpr std::size_t pitchWindow = 480; // thin samples compared at a time: 40 ms
constexpr std::size_t pitchHop = 240;    // thin samples: 20 ms
constexpr std::size_t shortest = 8;      // period in thin samples: 1500 Hz
constexpr std::size_t longest = 240;     // 50 Hz
constexpr double clearPitch = 0.8;       // likeness of one period to the next that makes a pitch
constexpr double nearlyBest = 0.92;      // of the best likeness: a shorter period so alike is the pitch
constexpr double audiblePower = 0.02;    // of the clip's loudest moment, as power

Signal thinned(const Stereo& sound) {
    Signal middle(sound.left.size());
    std::transform(sound.left.begin(), sound.left.end(), sound.right.begin(), middle.begin(), std::plus<>());
    middle = lowPassed(std::move(middle), 0.3 * thinRate);
    Signal thin;
    for (std::size_t index = 0; index < middle.size(); index += thinningFactor) thin.push_back(middle[index]);
    return thin;
}

double power(const Signal& signal, std::size_t start) {
    double sum = 0;
    for (std::size_t index = start; index < start + pitchWindow; ++index) sum += signal[index] * signal[index];
    return sum;
}

// How alike a moment is to the one a period later: 1 when equal.
double likeness(const Signal& signal, std::size_t start, std::size_t period) {
    double product = 0;
    for (std::size_t index = start; index < start + pitchWindow; ++index)
        product += signal[index] * signal[index + period];
    return product / std::sqrt(power(signal, start) * power(signal, start + period) + 1e-12);
}

// The pitch of one moment in hertz, 0 when it has none.
double pitchAt(const Signal& signal, std::size_t start) {
    std::vector<double> alike(longest + 2);
    for (std::size_t period = shortest - 1; period < alike.size(); ++period) {
        alike[period] = likeness(signal, start, period);
    }
    const double best = *std::max_element(alike.begin() + shortest, alike.end());
    if (best < clearPitch) return 0;
    for (std::size_t period = shortest; period <= longest; ++period) {
        const bool summit = alike[period] >= alike[period - 1] && alike[period] >= alike[period + 1];
        if (summit && alike[period] > nearlyBest * best) return thinRate / static_cast<double>(period);
    }
    return 0;
}

} // namespace

std::vector<double> pitchTrack(const Stereo& sound) {
    const Signal signal = thinned(sound);
    const std::size_t reach = pitchWindow + longest + 2;
    double loudest = 0;
    for (std::size_t start = 0; start + reach < signal.size(); start += pitchHop) {
        loudest = std::max(loudest, power(signal, start));
    }
    std::vector<double> track;
    for (std::size_t start = 0; start + reach < signal.size(); start += pitchHop) {
        const double hertz = power(signal, start) > audiblePower * loudest ? pitchAt(signal, start) : 0;
        if (hertz > 0) track.push_back(hertz);
    }
    return track;
}

} // namespace quiverly::clips
