#include "clips/synthesis/Curve.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quiverly::clips {

double Curve::operator()(double fraction) const {
    const auto next =
        std::find_if(points.begin(), points.end(), [fraction](const Point& point) { return point.at > fraction; });
    if (next == points.begin()) return points.front().value;
    const Point& before = *(next - 1);
    if (next == points.end()) return before.value;
    const double along = (fraction - before.at) / (next->at - before.at);
    return before.value + (next->value - before.value) * (0.5 - 0.5 * std::cos(std::numbers::pi * along));
}

Curve Curve::operator*(double factor) const {
    Curve scaled = *this;
    for (Point& point : scaled.points) point.value *= factor;
    return scaled;
}

} // namespace quiverly::clips
