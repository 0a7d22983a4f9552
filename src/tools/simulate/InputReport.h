#pragma once

#include <array>
#include <cstdint>

#include "tools/simulate/Motion.h"

namespace quiverly {

// An input report as the sensor sends it: a header and a tail that readers ignore, and between them, from byte 6, the
// three accelerations as little-endian 32-bit integers in 1/65536 g. `number` counts the reports.
using InputReport = std::array<std::uint8_t, 22>;

InputReport inputReport(const Acceleration& acceleration, std::uint32_t number);

} // namespace quiverly
