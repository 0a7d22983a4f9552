#pragma once

#include <cmath>
#include <cstdint>
#include <vector>

namespace quiverly {

// What the virtual platform's sensor sends: a header and a tail of bytes that mean nothing, and between them, from byte
// 6, the three accelerations as little-endian 32-bit integers. A report that is too short for them holds what fits.

// x, y, z in 1/65536 g.
inline std::vector<std::uint8_t> rawSensorReport(std::int32_t x, std::int32_t y, std::int32_t z,
                                                 std::size_t length = 18) {
    std::vector<std::uint8_t> bytes(length, 0xA5);
    std::size_t offset = 6;
    for (const std::int32_t axis : {x, y, z}) {
        for (std::size_t index = 0; index < 4 && offset + index < length; ++index) {
            bytes[offset + index] = static_cast<std::uint8_t>(static_cast<std::uint32_t>(axis) >> (8 * index));
        }
        offset += 4;
    }
    return bytes;
}

// x, y, z in g.
inline std::vector<std::uint8_t> sensorReport(double x, double y, double z, std::size_t length = 18) {
    const auto raw = [](double axis) { return static_cast<std::int32_t>(std::lround(axis * 65536.0)); };
    return rawSensorReport(raw(x), raw(y), raw(z), length);
}

} // namespace quiverly
