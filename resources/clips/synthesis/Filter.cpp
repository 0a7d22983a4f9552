#include "synthesis/Filter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quiverly::clips {

namespace {

constexpr std::size_t retuneEvery = 16; // samples: a third of a millisecond, finer than any gesture is heard

template<typename Choice>
Signal filtered(Signal signal, const Gesture& hertz, double quality, Choice choice) {
    Filter filter;
    for (std::size_t i = 0; i < signal.size(); ++i) {
        if (i % retuneEvery == 0) {
            filter.tune(hertz(static_cast<double>(i) / static_cast<double>(signal.size())), quality);
        }
        signal[i] = filter(signal[i]).*choice;
    }
    return signal;
}

} // namespace

void Filter::tune(double hertz, double quality) {
    const double safe = std::clamp(hertz, 5.0, 0.45 * sampleRate);
    tuning_ = std::tan(std::numbers::pi * safe / sampleRate);
    damping_ = 1 / quality;
}

Filter::Outputs Filter::operator()(double sample) {
    const double high = (sample - low_ - (tuning_ + damping_) * band_) / (1 + tuning_ * (tuning_ + damping_));
    const double band = band_ + tuning_ * high;
    const double low = low_ + tuning_ * band;
    band_ = band + tuning_ * high;
    low_ = low + tuning_ * band;
    return {low, damping_ * band, high};
}

Signal lowPassed(Signal signal, const Gesture& hertz, double quality) {
    return filtered(std::move(signal), hertz, quality, &Filter::Outputs::low);
}

Signal bandPassed(Signal signal, const Gesture& hertz, double quality) {
    return filtered(std::move(signal), hertz, quality, &Filter::Outputs::band);
}

Signal highPassed(Signal signal, const Gesture& hertz, double quality) {
    return filtered(std::move(signal), hertz, quality, &Filter::Outputs::high);
}

} // namespace quiverly::clips
