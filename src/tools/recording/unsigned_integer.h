#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>

namespace quiverly {

// The number that is the whole of the text, [0-9]+ and of 64 bits at most.
inline std::optional<std::uint64_t> unsignedInteger(std::string_view text) {
    std::uint64_t value = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, value);
    return error == std::errc() && rest == end ? std::optional(value) : std::nullopt;
}

} // namespace quiverly
