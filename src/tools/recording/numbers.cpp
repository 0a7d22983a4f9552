#include "tools/recording/numbers.h"

#include <charconv>
#include <cmath>
#include <system_error>

#include <fast_float/fast_float.h>

namespace quiverly {

tl::expected<double, std::string> decimalNumber(std::string_view text) {
    const auto notANumber = tl::make_unexpected("not a number such as 12 or -0.25");
    const auto magnitude = text.substr(text.starts_with('-') ? 1 : 0);
    if (magnitude.empty() || !isDigit(magnitude.front()) || !isDigit(magnitude.back())) return notANumber;
    double value = 0.0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = fast_float::from_chars(text.data(), end, value, fast_float::chars_format::fixed);
    if (rest != end) return notANumber;
    if (!std::isfinite(value)) return tl::make_unexpected("larger than any number");
    return value; // 0 for what is smaller than any number, which may be an error to the library
}

tl::expected<std::uint64_t, std::string> wholeNumber(std::string_view text) {
    std::uint64_t value = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || rest != end) return tl::make_unexpected("not a whole number of at most 64 bits");
    return value;
}

} // namespace quiverly
