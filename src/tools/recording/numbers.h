#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <tl/expected.hpp>

// Numbers as recordings and options write them.
namespace quiverly {

constexpr bool isDigit(char character) {
    return '0' <= character && character <= '9';
}

// Each of these reads the whole text; the error is what is wrong with it.

// -?[0-9]+(\.[0-9]+)?, with any number of digits: the nearest double, which is finite.
tl::expected<double, std::string> decimalNumber(std::string_view text);

// [0-9]+, of at most 64 bits.
tl::expected<std::uint64_t, std::string> wholeNumber(std::string_view text);

} // namespace quiverly
