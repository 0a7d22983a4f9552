#include "clips/synthesis/Vocoder.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "clips/synthesis/Filter.h"

namespace quiverly::clips {

namespace {

constexpr int vocoderBands = 20;
constexpr double lowest = 150;     // hertz
constexpr double highest = 8000;   // hertz
constexpr double quality = 5;      // of each band
constexpr double followHertz = 40; // how fast a band's loudness is followed

} // namespace

Signal vocoded(const Signal& speech, const Signal& carrier) {
    const std::size_t length = std::min(speech.size(), carrier.size());
    const double smoothing = 1 - std::exp(-2 * std::numbers::pi * followHertz / sampleRate);
    Signal sum(length);
    for (int band = 0; band < vocoderBands; ++band) {
        const double hertz = lowest * std::pow(highest / lowest, static_cast<double>(band) / (vocoderBands - 1));
        const Signal heard = bandPassed(speech, hertz, quality);
        const Signal sung = bandPassed(carrier, hertz, quality);
        double loudness = 0;
        for (std::size_t index = 0; index < length; ++index) {
            loudness += smoothing * (std::abs(heard[index]) - loudness);
            sum[index] += loudness * sung[index] * std::sqrt(hertz / lowest);
        }
    }
    return normalised(std::move(sum));
}

} // namespace quiverly::clips
