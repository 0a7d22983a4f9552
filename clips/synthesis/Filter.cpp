#include "clips/synthesis/Filter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quiverly::clips {

namespace {

constexpr std::size_t filterRetuneEvery = 16; // samples: a third of a millisecond

template<typename Output>
Signal filtered(Signal signal, const Curve& hertz, double quality, Output output) {
    Filter filter;
    for (std::size_t index = 0; index < signal.size(); ++index) {
        if (index % filterRetuneEvery == 0) {
            filter.tune(hertz(static_cast<double>(index) / static_cast<double>(signal.size())), quality);
        }
        signal[index] = filter(signal[index]).*output;
    }
    return signal;
}

} // namespace

void Filter::tune(double hertz, double quality) {
    const double safe = std::clamp(hertz, 5.0, 0.45 * sampleRate);
    tuning = std::tan(std::numbers::pi * safe / sampleRate);
    damping = 1 / quality;
}

Filter::Outputs Filter::operator()(double sample) {
    const double high = (sample - heldLow - (tuning + damping) * heldBand) / (1 + tuning * (tuning + damping));
    const double band = heldBand + tuning * high;
    const double low = heldLow + tuning * band;
    heldBand = band + tuning * high;
    heldLow = low + tuning * band;
    return {low, damping * band, high};
}

Signal lowPassed(Signal signal, const Curve& hertz, double quality) {
    return filtered(std::move(signal), hertz, quality, &Filter::Outputs::low);
}

Signal bandPassed(Signal signal, const Curve& hertz, double quality) {
    return filtered(std::move(signal), hertz, quality, &Filter::Outputs::band);
}

Signal highPassed(Signal signal, const Curve& hertz, double quality) {
    return filtered(std::move(signal), hertz, quality, &Filter::Outputs::high);
}

} // namespace quiverly::clips
