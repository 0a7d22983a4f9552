#include "clips/instruments/Harp.h"

#include <algorithm>
#include <cmath>

#include "clips/synthesis/Filter.h"
#include "clips/synthesis/Oscillator.h"

namespace quiverly::clips {

namespace {

constexpr double damperSeconds = 0.03; // a hand takes so long to silence the string

} // namespace

Signal plucked(double hertz, double seconds, double brightness, RandomNumbers& random) {
    const double period = sampleRate / hertz;
    const auto whole = static_cast<std::size_t>(period - 0.5);
    const double part = period - 0.5 - static_cast<double>(whole); // the averaging itself delays by half a sample
    Signal string =
        lowPassed(whiteNoise((static_cast<double>(whole) + 1.5) / sampleRate, random), hertz * (3 + 40 * brightness));
    const double ringing = std::pow(10, -3 / (hertz * (0.5 + 2.5 * std::exp(-hertz / 500))));
    std::size_t position = 0;
    double averaged = 0;
    Signal out = generated(seconds, [&](double) {
        const double oldest = string[position];
        const double next = string[(position + 1) % string.size()];
        const double delayed = next + part * (oldest - next);
        const double sample = ringing * 0.5 * (delayed + averaged);
        averaged = delayed;
        string[position] = sample;
        position = (position + 1) % string.size();
        return sample;
    });
    return normalised(faded(std::move(out), {{1 - std::min(0.5, damperSeconds / seconds), 1}, {1, 0}}));
}

} // namespace quiverly::clips
