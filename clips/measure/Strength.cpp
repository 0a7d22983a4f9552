#include "clips/measure/Strength.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "clips/measure/Loudness.h"
#include "clips/measure/PitchTrack.h"
#include "clips/measure/Spectrogram.h"
#include "clips/synthesis/Filter.h"

namespace quiverly::clips {

namespace {

constexpr double soundingBelowLoudest = 40; // dB below the loudest band of the clip in which a band still sounds
constexpr double lowShare = 0.1;            // of the pitches are left out at either end of the range
constexpr double slowestBeat = 30;          // hertz: what is slower is heard as single beats,
constexpr double fastestBeat = 75;          // what is faster as a tone

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

double powerOf(const Signal& signal) {
    return std::inner_product(signal.begin(), signal.end(), signal.begin(), 0.0);
}

double roughnessOf(const Stereo& sound) {
    Signal loudness(sound.left.size());
    std::transform(sound.left.begin(), sound.left.end(), sound.right.begin(), loudness.begin(),
                   [](double left, double right) { return std::abs(left + right); });
    const Signal followed = lowPassed(loudness, fastestBeat);
    const double beats = powerOf(highPassed(followed, slowestBeat));
    const double all = powerOf(followed);
    return all > 0 ? std::sqrt(2 * beats / all) : 0;
}

} // namespace

Strength strengthOf(const Stereo& sound) {
    const std::vector<Spectrum> columns = spectrogram(sound);
    return {secondsOf(sound),   momentaryLoudness(sound),   brightnessOf(columns),
            densityOf(columns), rangeOf(pitchTrack(sound)), roughnessOf(sound)};
}

} // namespace quiverly::clips
