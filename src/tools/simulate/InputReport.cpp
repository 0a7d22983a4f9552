#include "tools/simulate/InputReport.h"

#include <algorithm>
#include <cmath>

namespace quiverly {

namespace {

constexpr double countsPerG = 65536.0;
constexpr double range = 32767.0; // g; what 32 bits hold

void put(InputReport& report, std::size_t offset, std::uint32_t value) {
    for (std::size_t index = 0; index < 4; ++index) {
        report[offset + index] = static_cast<std::uint8_t>(value >> (8 * index));
    }
}

std::uint32_t raw(double axis) {
    return static_cast<std::uint32_t>(std::lround(std::clamp(axis, -range, range) * countsPerG));
}

} // namespace

InputReport inputReport(const Acceleration& acceleration, std::uint32_t number) {
    InputReport report = {0x01, 0xA5};
    put(report, 2, number);
    put(report, 6, raw(acceleration.x));
    put(report, 10, raw(acceleration.y));
    put(report, 14, raw(acceleration.z));
    put(report, 18, number ^ 0x5A5A5A5A);
    return report;
}

} // namespace quiverly
