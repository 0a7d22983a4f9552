#include "tools/recording/Decimal.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace quiverly {

namespace {

// A whole part of 310 digits is beyond the greatest double (1.8e308) whatever follows.
constexpr std::size_t wholeDigitsKept = 310;

// The value halfway between two neighbouring doubles is a multiple of 2^-1075: it has no more than 1075 digits after
// the point. So of what follows the first 1075 only one thing can matter, whether all of it is zero.
constexpr std::size_t fractionDigitsKept = 1075;

constexpr std::uint64_t billion = 1'000'000'000;

std::uint64_t integer(const std::string& digits) {
    std::uint64_t number = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return number;
}

} // namespace

std::optional<double> Decimal::finiteNumber(std::string_view text) {
    Decimal decimal;
    for (const char character : text) {
        if (!decimal.accept(character)) return std::nullopt;
    }
    if (!decimal.isComplete()) return std::nullopt;
    const double value = decimal.value();
    return std::isfinite(value) ? std::optional(value) : std::nullopt;
}

bool Decimal::accept(int character) {
    if ('0' <= character && character <= '9') {
        const bool afterPoint = state == State::point || state == State::fraction;
        afterPoint ? addToFraction(static_cast<char>(character)) : addToWhole(static_cast<char>(character));
    } else if (character == '-' && state == State::nothing) {
        negative = true;
        state = State::sign;
    } else if (character == '.' && state == State::whole) {
        state = State::point;
    } else {
        return false;
    }
    return true;
}

void Decimal::addToWhole(char digit) {
    state = State::whole;
    const bool leadingZero = whole.empty() && digit == '0';
    if (!leadingZero && whole.size() < wholeDigitsKept) whole += digit;
}

void Decimal::addToFraction(char digit) {
    state = State::fraction;
    if (fraction.size() < fractionDigitsKept) {
        fraction += digit;
    } else if (digit != '0') {
        fractionGoesOn = true;
    }
}

double Decimal::value() const {
    std::string text = negative ? "-" : "";
    text.append(whole.empty() ? "0" : whole);
    if (!fraction.empty()) text.append(".").append(fraction);
    if (fractionGoesOn) text += '1';
    return std::strtod(text.c_str(), nullptr);
}

std::optional<std::uint64_t> Decimal::billionths() const {
    if (fraction.size() > 9) return std::nullopt;
    constexpr std::uint64_t greatest = std::numeric_limits<std::uint64_t>::max();
    if (whole.size() > 11 || integer(whole) >= greatest / billion) return greatest;
    return integer(whole) * billion + integer(fraction + std::string(9 - fraction.size(), '0'));
}

} // namespace quiverly
