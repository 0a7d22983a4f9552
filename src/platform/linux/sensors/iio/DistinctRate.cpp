#include "platform/linux/sensors/iio/DistinctRate.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace quiverly {

namespace {

constexpr double jump = 0.03; // g along one axis; more than the noise of a sensor at rest

bool isJump(const Acceleration3& to, const Acceleration3& from) {
    for (std::size_t axis = 0; axis < to.size(); ++axis) {
        if (std::abs(to[axis] - from[axis]) >= jump) return true;
    }
    return false;
}

} // namespace

bool DistinctRate::add(const Acceleration3& reading, double seconds) {
    if (last && reading == *last) return false;
    const bool follows = std::exchange(jumped, last && isJump(reading, *last));
    if (follows) gaps[count++ % gaps.size()] = seconds - lastChange;
    last = reading;
    lastChange = seconds;
    return follows;
}

// The longest quarter of the gaps is left out: after its last jump a sensor lies still.
std::optional<double> DistinctRate::perSecond() const {
    if (count < gaps.size()) return std::nullopt;
    auto sorted = gaps;
    std::ranges::sort(sorted);
    constexpr std::size_t used = sorted.size() * 3 / 4;
    const double sum = std::accumulate(sorted.begin(), sorted.begin() + used, 0.0);
    return sum > 0 ? std::optional(used / sum) : std::nullopt;
}

} // namespace quiverly
