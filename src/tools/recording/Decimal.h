#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quiverly {

// A decimal number as recordings and options write it, -?[0-9]+(\.[0-9]+)?, taken in character by character. However
// many digits it has, few of them are kept, and its values are as exact as if all were.
class Decimal {
public:
    // The number that is the whole of the text, if it is one and finite as a double.
    static std::optional<double> finiteNumber(std::string_view text);

    // Takes the character in. False, and nothing has changed, where the number cannot go on with it.
    bool accept(int character);

    // Whether what was taken in is a number as it stands.
    bool isComplete() const { return state == State::whole || state == State::fraction; }

    bool isNegative() const { return negative; }

    // The nearest double; infinite beyond the greatest.
    double value() const;

    // The magnitude in units of 1e-9; nothing when there are more than nine digits after the point. What is too large
    // for 64 bits becomes the greatest they can hold.
    std::optional<std::uint64_t> billionths() const;

private:
    enum class State { nothing, sign, whole, point, fraction };

    void addToWhole(char digit);
    void addToFraction(char digit);

    State state = State::nothing;
    bool negative = false;
    std::string whole;           // without leading zeros
    std::string fraction;        // the first digits after the point
    bool fractionGoesOn = false; // a digit other than 0 came after those
};

} // namespace quiverly
