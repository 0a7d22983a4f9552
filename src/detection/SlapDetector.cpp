#include "detection/SlapDetector.h"

#include <algorithm>
#include <cmath>

namespace quiverly {

void SlapDetector::process(double x, double y, double z) {
    const double mag = std::sqrt((x * x + y * y) + z * z);
    baseline = baseline * 0.995 + mag * 0.005;
    const double fromBaseline = std::abs(mag - baseline);
    const double fromPrevious = std::abs(mag - prevMag);
    prevMag = mag;

    const double score = std::max(fromBaseline, fromPrevious);
    if (score < threshold || std::isnan(score)) return;

    const calendar::TimePoint now = calendar::now();
    if (calendar::elapsed(lastFire, now) < cooldown) return;
    lastFire = now;
    if (onSlap) onSlap(score);
}

} // namespace quiverly
