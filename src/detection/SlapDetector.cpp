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
    const double fromBaseline = std::abs(mag - baseline);
    const double fromPrevious = std::abs(mag - prevMag);
    prevMag = mag;

    const double score = std::max(fromBaseline, fromPrevious);
    if (score < threshold || std::isnan(score)) return;

    const calendar::TimePoint now = calendar::now();
    if (calendar::elapsed(lastFire, now) < cooldown) return;
    lastFire = now;
    if (const auto receiver = onSlap) receiver(score); // a copy, which outlives its replacement
}

} // namespace quiverly
