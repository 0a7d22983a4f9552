#include "tools/recording/Decimal.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <limits>
#include <random>

namespace quiverly {
namespace {

constexpr std::uint64_t greatest = std::numeric_limits<std::uint64_t>::max();

Decimal decimal(std::string_view text) {
    Decimal decimal;
    for (const char character : text) EXPECT_TRUE(decimal.accept(character)) << text;
    return decimal;
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

TEST(DecimalTest, WholeNumbersAndFractionsOfEitherSignAreNumbers) {
    EXPECT_EQ(Decimal::finiteNumber("0"), 0.0);
    EXPECT_EQ(Decimal::finiteNumber("12"), 12.0);
    EXPECT_EQ(Decimal::finiteNumber("-3.25"), -3.25);
    EXPECT_EQ(Decimal::finiteNumber("007.50"), 7.5);
    EXPECT_EQ(Decimal::finiteNumber("0.1"), 0.1);
    EXPECT_TRUE(std::signbit(Decimal::finiteNumber("-0").value()));
}

TEST(DecimalTest, NothingElseIsANumber) {
    for (const char* text : {"", "-", "+1", "--1", ".5", "5.", "-.5", "1.2.3", "1e3", "0x10", "inf", "nan", " 1", "1 ",
                             "1-", "1,5", "1'000", "\xD9\xA1"}) {
        EXPECT_EQ(Decimal::finiteNumber(text), std::nullopt) << text;
    }
    EXPECT_EQ(Decimal::finiteNumber(std::string_view("1\0", 2)), std::nullopt);
}

TEST(DecimalTest, ACharacterThatIsRefusedChangesNothing) {
    Decimal number = decimal("1");
    EXPECT_FALSE(number.accept('-'));
    EXPECT_FALSE(number.accept('x'));
    EXPECT_FALSE(number.accept(-1));
    EXPECT_TRUE(number.accept('5'));
    EXPECT_EQ(number.value(), 15.0);
}

TEST(DecimalTest, TheGreatestDoubleIsFiniteAndWhatRoundsAboveItIsNot) {
    std::string digits(400, '\0');
    const double most = std::numeric_limits<double>::max();
    digits.resize(static_cast<std::size_t>(
        std::to_chars(digits.data(), digits.data() + digits.size(), most, std::chars_format::fixed).ptr -
        digits.data()));
    EXPECT_EQ(digits.size(), 309U);
    EXPECT_EQ(Decimal::finiteNumber(digits), most);
    EXPECT_EQ(Decimal::finiteNumber("-" + zeros(5000) + digits), -most);
    digits[16] = '9';
    EXPECT_EQ(Decimal::finiteNumber(digits), std::nullopt);
    EXPECT_EQ(Decimal::finiteNumber("1" + zeros(309)), std::nullopt);
    EXPECT_EQ(Decimal::finiteNumber("1" + zeros(100'000)), std::nullopt);
}

TEST(DecimalTest, UnderflowIsFine) {
    EXPECT_EQ(Decimal::finiteNumber("0." + zeros(323) + "5"), std::numeric_limits<double>::denorm_min());
    EXPECT_EQ(Decimal::finiteNumber("0." + zeros(5000) + "1"), 0.0);
}

TEST(DecimalTest, ADigitFarBehindTheOthersDecidesATie) {
    // Halfway between 1 and the double after it, where the even neighbour, 1, wins unless anything comes behind.
    const std::string tie = "1." + negativePowerOfTwo(53);
    const double next = std::nextafter(1.0, 2.0);
    EXPECT_EQ(Decimal::finiteNumber(tie), 1.0);
    EXPECT_EQ(Decimal::finiteNumber(tie + zeros(100'000)), 1.0);
    EXPECT_EQ(Decimal::finiteNumber(tie + zeros(100'000) + "1"), next);

    // Half of the least double, which has the most digits a tie can have.
    const std::string least = "0." + negativePowerOfTwo(1075);
    EXPECT_EQ(least.size(), 2U + 1075U);
    EXPECT_EQ(Decimal::finiteNumber(least), 0.0);
    EXPECT_EQ(Decimal::finiteNumber(least + zeros(100'000)), 0.0);
    EXPECT_EQ(Decimal::finiteNumber(least + zeros(100'000) + "1"), std::numeric_limits<double>::denorm_min());
}

TEST(DecimalTest, EveryDoubleIsReadBack) {
    std::mt19937_64 chance(7);
    for (int count = 0; count < 20'000; ++count) {
        const double number = std::ldexp(static_cast<double>(chance()), static_cast<int>(chance() % 900) - 600);
        char text[1200];
        const auto end = std::to_chars(std::begin(text), std::end(text), number, std::chars_format::fixed).ptr;
        EXPECT_EQ(Decimal::finiteNumber(std::string_view(text, end)), number);
    }
}

TEST(DecimalTest, BillionthsAreExact) {
    EXPECT_EQ(decimal("0").billionths(), 0U);
    EXPECT_EQ(decimal("007.5").billionths(), 7'500'000'000U);
    EXPECT_EQ(decimal("0.000000001").billionths(), 1U);
    EXPECT_EQ(decimal("-1.000000001").billionths(), 1'000'000'001U);
    EXPECT_EQ(decimal("4000000000.000000000").billionths(), 4'000'000'000'000'000'000U);
    EXPECT_EQ(decimal("13000000000.999999999").billionths(), 13'000'000'000'999'999'999U);
}

TEST(DecimalTest, MoreThanNineDigitsAfterThePointAreNoBillionths) {
    EXPECT_EQ(decimal("1.0000000000").billionths(), std::nullopt);
    EXPECT_EQ(decimal("1.1234567891").billionths(), std::nullopt);
}

TEST(DecimalTest, BillionthsThatDoNotFitAreTheGreatestThatDo) {
    EXPECT_EQ(decimal("18446744072.999999999").billionths(), 18'446'744'072'999'999'999U);
    EXPECT_EQ(decimal("18446744073.999999999").billionths(), greatest);
    EXPECT_EQ(decimal("99999999999").billionths(), greatest);
    EXPECT_EQ(decimal("1" + zeros(12)).billionths(), greatest);
    EXPECT_EQ(decimal("1" + zeros(1'000'000)).billionths(), greatest);
    EXPECT_EQ(decimal(zeros(1'000'000) + "1").billionths(), 1'000'000'000U);
}

} // namespace
} // namespace quiverly
