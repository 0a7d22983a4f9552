#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>

namespace quiverly {

// An input of a fuzzer taken apart into packets: two bytes for the length of each, then its bytes.
class Packets {
public:
    explicit Packets(std::span<const std::uint8_t> input) : rest(input) {}

    bool hasMore() const { return rest.size() >= 2; }

    // The next packet; the last one may be shorter than it says.
    std::span<const std::uint8_t> take() {
        const std::size_t said = rest[0] + std::size_t{256} * rest[1];
        rest = rest.subspan(2);
        const auto packet = rest.first(std::min(said, rest.size()));
        rest = rest.subspan(packet.size());
        return packet;
    }

private:
    std::span<const std::uint8_t> rest;
};

// Stops the fuzzer where something is not as it has to be.
inline void require(bool holds) {
    if (!holds) std::abort();
}

} // namespace quiverly
