#include "detection/SlapDetector.h"

#include <algorithm>
#include <cmath>

namespace quiverly {

namespace {

// Weights of the running average, about 1.6 seconds long at 125 samples a second.
constexpr double baselineWeight = 0.995;
constexpr double sampleWeight = 0.005;

} // namespace

void SlapDetector::process(double x, double y, double z) {
    const double mag = std::sqrt((x * x + y * y) + z * z);
    baseline = baseline * baselineWeight + mag * sampleWeight;
    const double amplitude = score(mag, baseline, prevMag);
    prevMag = mag;
    if (amplitude < threshold || std::isnan(amplitude)) return;

    const calendar::TimePoint now = calendar::now();
    if (isCoolingDown(now)) return;
    lastFire = now;
    if (const auto receiver = onSlap) receiver(amplitude); // a copy, which outlives its replacement
}

double SlapDetector::score(double mag, double baseline, double prevMag) {
    return std::max(std::abs(mag - baseline), std::abs(mag - prevMag));
}

} // namespace quiverly
