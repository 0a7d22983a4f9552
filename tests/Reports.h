#pragma once

#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

namespace quiverly {

// An input report of the sensor: 18 bytes unless asked otherwise, header and tail filled with bytes that mean nothing,
// in a heap buffer of exactly its size. x, y, z in g.
inline std::vector<std::uint8_t> report(double x, double y, double z, std::size_t length = 18) {
    std::vector<std::uint8_t> bytes(length, 0xA5);
    std::size_t offset = 6;
    for (const double axis : {x, y, z}) {
        const auto raw = static_cast<std::uint32_t>(static_cast<std::int32_t>(std::lround(axis * 65536.0)));
        for (std::size_t index = 0; index < 4 && offset + index < length; ++index) {
            bytes[offset + index] = static_cast<std::uint8_t>(raw >> (8 * index));
        }
        offset += 4;
    }
    return bytes;
}

} // namespace quiverly
