#include "clips/instruments/Glottis.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quiverly::clips {

namespace {

constexpr double leastRd = 0.3;
constexpr double mostRd = 2.7;
constexpr double stepOfRd = 0.05;

// What flows while the folds are open, for a wave that ends at -1: the growth decides whether the cycle sums up to 0.
double openFlow(double growth, double turning, double closing) {
    const double size = -1 / (std::exp(growth * closing) * std::sin(turning * closing));
    const double end =
        std::exp(growth * closing) * (growth * std::sin(turning * closing) - turning * std::cos(turning * closing));
    return size * (end + turning) / (growth * growth + turning * turning);
}

} // namespace

Glottis::Glottis(double rd) {
    // Fant 1995, equations 2 to 4: Ra, Rk and Rg from Rd.
    returning = (4.8 * rd - 1) / 100;
    const double asymmetry = (22.4 + 11.8 * rd) / 100;
    const double speed = asymmetry / (4 * (0.11 * rd / (0.5 + 1.2 * asymmetry) - returning));
    closing = (1 + asymmetry) / (2 * speed);
    turning = 2 * std::numbers::pi * speed;

    const double rest = 1 - closing;
    decay = 1 / returning;
    for (int round = 0; round < 100; ++round) decay = (1 - std::exp(-decay * rest)) / returning;
    const double remains = std::exp(-decay * rest);
    const double returnFlow = -((1 - remains) / decay - rest * remains) / (decay * returning);

    double low = -30;
    double high = 200;
    for (int round = 0; round < 100; ++round) {
        growth = (low + high) / 2;
        (openFlow(growth, turning, closing) + returnFlow > 0 ? low : high) = growth;
    }
    start = -1 / (std::exp(growth * closing) * std::sin(turning * closing));
}

double Glottis::flowDerivative(double phase) const {
    if (phase < closing) return start * std::exp(growth * phase) * std::sin(turning * phase);
    return -(std::exp(-decay * (phase - closing)) - std::exp(-decay * (1 - closing))) / (decay * returning);
}

double Glottis::openness(double phase) const {
    if (phase >= closing) return std::exp(-3 * (phase - closing) / returning);
    const double opened = phase / closing;
    return std::min(1.0, 6.75 * opened * opened * (1 - opened) + opened * opened * opened);
}

const Glottis& glottisFor(double rd) {
    static const std::vector<Glottis> all = [] {
        std::vector<Glottis> solved;
        for (double each = leastRd; each < mostRd + stepOfRd / 2; each += stepOfRd) solved.emplace_back(each);
        return solved;
    }();
    const double place = std::clamp((rd - leastRd) / stepOfRd, 0.0, static_cast<double>(all.size() - 1));
    return all[static_cast<std::size_t>(std::floor(place + 0.5))];
}

} // namespace quiverly::clips
