#include "clips/measure/Spectrogram.h"

#include <kiss_fftr.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>

namespace quiverly::clips {

namespace {

constexpr int windowLength = 2048; // samples: 43 ms
constexpr double lowestHertz = 80;
constexpr double highestHertz = 14000;
constexpr double leastPower = 1e-8;

// The mel scale of D. O'Shaughnessy, "Speech Communication", 1987.
double mel(double hertz) {
    return 2595 * std::log10(1 + hertz / 700);
}
double hertzOf(double mels) {
    return 700 * (std::pow(10, mels / 2595) - 1);
}

// The lower edge of a band; the edge after the last band is highestHertz.
double bandEdge(double band) {
    return hertzOf(mel(lowestHertz) + (mel(highestHertz) - mel(lowestHertz)) * band / spectrumBands);
}

struct PlanRelease {
    void operator()(kiss_fftr_cfg plan) const { kiss_fftr_free(plan); }
};
using Plan = std::unique_ptr<std::remove_pointer_t<kiss_fftr_cfg>, PlanRelease>;

std::vector<float> hannWindow() {
    std::vector<float> hann(windowLength);
    for (int index = 0; index < windowLength; ++index) {
        hann[static_cast<std::size_t>(index)] =
            static_cast<float>(0.5 - 0.5 * std::cos(2 * std::numbers::pi * (index + 0.5) / windowLength));
    }
    return hann;
}

// To which band each bin of the transform belongs; spectrumBands for none.
std::vector<std::size_t> bandOfBins() {
    std::vector<std::size_t> bandOfBin(windowLength / 2 + 1, spectrumBands);
    for (std::size_t bin = 0; bin < bandOfBin.size(); ++bin) {
        const double hertz = static_cast<double>(bin) * sampleRate / windowLength;
        for (std::size_t band = 0; band < spectrumBands; ++band) {
            if (hertz >= bandEdge(static_cast<double>(band)) && hertz < bandEdge(static_cast<double>(band) + 1)) {
                bandOfBin[bin] = band;
            }
        }
    }
    return bandOfBin;
}

// The middle of both channels from a sample on, silence after their end, shaped by the window.
std::vector<float> momentAt(const Stereo& sound, std::size_t start) {
    static const std::vector<float> hann = hannWindow();
    std::vector<float> moment(windowLength);
    const std::size_t length = std::min(moment.size(), sound.left.size() - start);
    for (std::size_t index = 0; index < length; ++index) {
        const double sample = (sound.left[start + index] + sound.right[start + index]) / 2;
        moment[index] = hann[index] * static_cast<float>(sample);
    }
    return moment;
}

Spectrum spectrumOf(const std::vector<kiss_fft_cpx>& bins) {
    static const std::vector<std::size_t> bandOfBin = bandOfBins();
    Spectrum spectrum{};
    for (std::size_t bin = 0; bin < bins.size(); ++bin) {
        if (bandOfBin[bin] == spectrumBands) continue;
        const double size = std::hypot(bins[bin].r, bins[bin].i) * 4 / windowLength;
        spectrum[bandOfBin[bin]] += size * size;
    }
    return spectrum;
}

} // namespace

std::vector<Spectrum> spectrogram(const Stereo& sound) {
    const Plan plan(kiss_fftr_alloc(windowLength, 0, nullptr, nullptr));
    const std::size_t hop = samplesIn(spectrogramHop);
    std::vector<Spectrum> columns;
    std::vector<kiss_fft_cpx> bins(windowLength / 2 + 1);
    for (std::size_t start = 0; start < sound.left.size(); start += hop) {
        kiss_fftr(plan.get(), momentAt(sound, start).data(), bins.data());
        columns.push_back(spectrumOf(bins));
    }
    return columns;
}

double bandCentre(std::size_t band) {
    return bandEdge(static_cast<double>(band) + 0.5);
}

double decibels(double power) {
    return 10 * std::log10(std::max(power, leastPower));
}

double spectralDistance(const std::vector<Spectrum>& one, const std::vector<Spectrum>& other) {
    const std::size_t length = std::max(one.size(), other.size());
    const auto level = [](const std::vector<Spectrum>& columns, std::size_t moment, std::size_t band) {
        return decibels(moment < columns.size() ? columns[moment][band] : 0);
    };
    double sum = 0;
    for (std::size_t moment = 0; moment < length; ++moment) {
        for (std::size_t band = 0; band < spectrumBands; ++band) {
            const double difference = level(one, moment, band) - level(other, moment, band);
            sum += difference * difference;
        }
    }
    return std::sqrt(sum / static_cast<double>(length * spectrumBands));
}

} // namespace quiverly::clips
