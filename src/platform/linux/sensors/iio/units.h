#pragma once

#include <array>

namespace quiverly {

inline constexpr double standardGravity = 9.80665; // m/s²

// Along x, y and z, in g.
using Acceleration3 = std::array<double, 3>;

} // namespace quiverly
