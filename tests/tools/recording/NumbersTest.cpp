#include "tools/recording/numbers.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <random>

namespace quiverly {
namespace {

// The number, or nothing.
std::optional<double> decimal(std::string_view text) {
    const auto number = decimalNumber(text);
    return number ? std::optional(*number) : std::nullopt;
}

std::string zeros(std::size_t count) {
    return std::string(count, '0');
}

// Decimal digits after the point of 2^-power.
std::string negativePowerOfTwo(int power) {
    std::string digits = "1";
    for (int halving = 0; halving < power; ++halving) {
        int carry = 0;
        for (char& digit : digits) {
            const int value = 10 * carry + (digit - '0');
            digit = static_cast<char>('0' + value / 2);
            carry = value % 2;
        }
        if (carry != 0) digits += '5';
    }
    return digits.substr(1);
}

TEST(NumbersTest, WholeNumbersAndFractionsOfEitherSignAreNumbers) {
    EXPECT_EQ(decimal("0"), 0.0);
    EXPECT_EQ(decimal("12"), 12.0);
    EXPECT_EQ(decimal("-3.25"), -3.25);
    EXPECT_EQ(decimal("007.50"), 7.5);
    EXPECT_EQ(decimal("0.1"), 0.1);
    EXPECT_TRUE(std::signbit(decimal("-0").value()));
}

TEST(NumbersTest, NothingElseIsANumber) {
    for (const char* text : {"", "-", "+1", "--1", ".5", "5.", "-.5", "1.2.3", "1e3", "0x10", "inf", "nan", " 1", "1 ",
                             "1-", "1,5", "1'000", "\xD9\xA1"}) {
        EXPECT_EQ(decimal(text), std::nullopt) << text;
    }
    EXPECT_EQ(decimal(std::string_view("1\0", 2)), std::nullopt);
}

TEST(NumbersTest, TheGreatestDoubleIsFiniteAndWhatRoundsAboveItIsNot) {
    std::string digits(400, '\0');
    const double most = std::numeric_limits<double>::max();
    digits.resize(static_cast<std::size_t>(
        std::to_chars(digits.data(), digits.data() + digits.size(), most, std::chars_format::fixed).ptr -
        digits.data()));
    EXPECT_EQ(digits.size(), 309U);
    EXPECT_EQ(decimal(digits), most);
    EXPECT_EQ(decimal("-" + zeros(5000) + digits), -most);
    digits[16] = '9';
    EXPECT_EQ(decimal(digits), std::nullopt);
    EXPECT_EQ(decimal("1" + zeros(309)), std::nullopt);
    EXPECT_EQ(decimal("1" + zeros(100'000)), std::nullopt);
}

TEST(NumbersTest, UnderflowIsFine) {
    EXPECT_EQ(decimal("0." + zeros(323) + "5"), std::numeric_limits<double>::denorm_min());
    EXPECT_EQ(decimal("0." + zeros(5000) + "1"), 0.0);
}

TEST(NumbersTest, ADigitFarBehindTheOthersDecidesATie) {
    // Halfway between 1 and the double after it, where the even neighbour, 1, wins unless anything comes behind.
    const std::string tie = "1." + negativePowerOfTwo(53);
    const double next = std::nextafter(1.0, 2.0);
    EXPECT_EQ(decimal(tie), 1.0);
    EXPECT_EQ(decimal(tie + zeros(100'000)), 1.0);
    EXPECT_EQ(decimal(tie + zeros(100'000) + "1"), next);

    // Half of the least double, which has the most digits a tie can have.
    const std::string least = "0." + negativePowerOfTwo(1075);
    EXPECT_EQ(least.size(), 2U + 1075U);
    EXPECT_EQ(decimal(least), 0.0);
    EXPECT_EQ(decimal(least + zeros(100'000)), 0.0);
    EXPECT_EQ(decimal(least + zeros(100'000) + "1"), std::numeric_limits<double>::denorm_min());
}

TEST(NumbersTest, EveryDoubleIsReadBack) {
    std::mt19937_64 chance(7);
    for (int count = 0; count < 20'000; ++count) {
        const double number = std::ldexp(static_cast<double>(chance()), static_cast<int>(chance() % 900) - 600);
        char text[1200];
        const auto end = std::to_chars(std::begin(text), std::end(text), number, std::chars_format::fixed).ptr;
        EXPECT_EQ(decimal(std::string_view(text, end)), number);
    }
}

TEST(NumbersTest, AWholeNumberHasDigitsOnlyAndFitsIn64Bits) {
    EXPECT_EQ(wholeNumber("0").value(), 0U);
    EXPECT_EQ(wholeNumber("010").value(), 10U);
    EXPECT_EQ(wholeNumber(zeros(100'000) + "7").value(), 7U);
    EXPECT_EQ(wholeNumber("18446744073709551615").value(), std::numeric_limits<std::uint64_t>::max());
    for (const char* text : {"", "-1", "-0", "+1", " 1", "1 ", "1.0", "1e3", "0x10", "18446744073709551616"}) {
        EXPECT_FALSE(wholeNumber(text)) << text;
    }
}

TEST(NumbersTest, TheErrorTellsWhatIsWrong) {
    EXPECT_EQ(decimalNumber("1e3").error(), "not a number such as 12 or -0.25");
    EXPECT_EQ(decimalNumber("1" + zeros(400)).error(), "larger than any number");
    EXPECT_EQ(wholeNumber("x").error(), "not a whole number of at most 64 bits");
}

} // namespace
} // namespace quiverly
