#pragma once

#include <cmath>
#include <cstdint>
#include <vector>

namespace quiverly {

// Input reports of the sensor: header and tail filled with bytes that mean nothing, in a heap buffer of exactly the
// report's size. A report that is too short holds what fits.

// x, y, z as on the wire: 65536 is 1 g.
inline std::vector<std::uint8_t> rawReport(std::int32_t x, std::int32_t y, std::int32_t z, std::size_t length = 18) {
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
inline std::vector<std::uint8_t> report(double x, double y, double z, std::size_t length = 18) {
    const auto raw = [](double axis) { return static_cast<std::int32_t>(std::lround(axis * 65536.0)); };
    return rawReport(raw(x), raw(y), raw(z), length);
}

} // namespace quiverly
