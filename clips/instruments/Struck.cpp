#include "clips/instruments/Struck.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quiverly::clips {

namespace body {
const Body churchBell{{0.5, 0.5, 3},      {1, 1, 2.4},       {1.183, 0.7, 1.8}, {1.506, 0.4, 1.3},  {2, 0.9, 1.3},
                      {2.514, 0.35, 0.8}, {2.662, 0.3, 0.7}, {3.011, 0.3, 0.6}, {4.166, 0.25, 0.4}, {5.433, 0.15, 0.3}};
const Body glass{{1, 1, 2.2}, {2.32, 0.35, 1.3}, {4.25, 0.25, 0.8}, {6.63, 0.15, 0.5}, {9.38, 0.1, 0.3}};
const Body bar{{1, 1, 1.8}, {2.756, 0.4, 0.8}, {5.404, 0.25, 0.4}, {8.933, 0.12, 0.2}};
const Body wood{{1, 1, 0.16}, {1.47, 0.5, 0.12}, {2.31, 0.5, 0.09}, {3.85, 0.4, 0.06}, {5.9, 0.25, 0.04}};
const Body pan{{1, 0.8, 0.9},    {1.41, 1, 0.7},   {2.17, 0.9, 0.8}, {2.93, 0.7, 0.5},
               {3.71, 0.8, 0.6}, {5.13, 0.6, 0.4}, {6.87, 0.5, 0.3}, {9.21, 0.3, 0.2}};
const Body drum{{0.85, 0.5, 0.3}, {1, 1, 1.2}, {1.5, 0.6, 0.8}, {1.98, 0.4, 0.6}, {2.44, 0.3, 0.4}, {2.9, 0.2, 0.3}};
} // namespace body

namespace {

constexpr double strikeSeconds = 0.001; // that the stick touches the body

Signal ringing(double hertz, double seconds) {
    const double fading = std::pow(10, -3 / (seconds * sampleRate)); // in one sample
    double strength = 1;
    return generated(seconds, [&](double along) {
        const double time = along * seconds;
        strength *= fading;
        return strength * std::min(1.0, time / strikeSeconds) * std::sin(2 * std::numbers::pi * hertz * time);
    });
}

} // namespace

Signal struck(const Body& body, double hertz, double hardness, double length) {
    Signal sum;
    for (const VibrationMode& mode : body) {
        const double frequency = mode.ratio * hertz;
        if (frequency > 0.45 * sampleRate) continue;
        const double gain = mode.gain * std::pow(mode.ratio, 1.6 * (hardness - 0.5));
        add(sum, ringing(frequency, length * mode.seconds), 0, gain);
    }
    return normalised(std::move(sum));
}

} // namespace quiverly::clips
