#include "clips/measure/Strength.h"

#include <algorithm>
#include <cmath>

#include "clips/measure/Loudness.h"
#include "clips/measure/PitchTrack.h"
#include "clips/measure/Spectrogram.h"

namespace quiverly::clips {

namespace {

constexpr double soundingBelowLoudest = 40; // dB below the loudest band of the clip in which a band still sounds
constexpr double brightEnough = 1000;       // hertz: what is brighter yet is thinner rather than stronger
constexpr double lowShare = 0.1;            // of the pitches are left out at either end of the range

// The mean of the bands on a scale of octaves, as the ear hears them, each weighted by the root of its power, which is
// closer to how loud it sounds than the power itself.
double brightnessOf(const std::vector<Spectrum>& columns) {
    double weights = 0;
    double sum = 0;
    for (const Spectrum& column : columns) {
        for (std::size_t band = 0; band < spectrumBands; ++band) {
            const double weight = std::sqrt(column[band]);
            weights += weight;
            sum += weight * std::log2(bandCentre(band));
        }
    }
    return weights > 0 ? std::exp2(sum / weights) : 0;
}

double densityOf(const std::vector<Spectrum>& columns) {
    double loudest = 0;
    for (const Spectrum& column : columns) loudest = std::max(loudest, *std::max_element(column.begin(), column.end()));
    const double least = loudest * std::pow(10, -soundingBelowLoudest / 10);
    double sounding = 0;
    for (const Spectrum& column : columns) {
        sounding += static_cast<double>(
            std::count_if(column.begin(), column.end(), [least](double power) { return power > least; }));
    }
    return sounding / static_cast<double>(columns.size());
}

double rangeOf(std::vector<double> pitches) {
    if (pitches.empty()) return 0;
    std::sort(pitches.begin(), pitches.end());
    const auto at = [&pitches](double share) {
        return pitches[static_cast<std::size_t>(share * static_cast<double>(pitches.size() - 1))];
    };
    return std::log2(at(1 - lowShare) / at(lowShare));
}

} // namespace

double Strength::points() const {
    return std::log2(seconds) + 0.5 * std::log2(density) + 0.3 * std::log2(std::min(brightness / brightEnough, 1.0)) +
           0.25 * range + loudness / 6;
}

Strength strengthOf(const Stereo& sound) {
    const std::vector<Spectrum> columns = spectrogram(sound);
    return {secondsOf(sound), momentaryLoudness(sound), brightnessOf(columns), densityOf(columns),
            rangeOf(pitchTrack(sound))};
}

} // namespace quiverly::clips
