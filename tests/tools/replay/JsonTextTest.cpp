#include "tools/replay/JsonText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

namespace quiverly {
namespace {

std::string jsonString(std::string_view bytes) {
    std::string text;
    json::appendString(text, bytes);
    return text;
}

template<class Number>
std::string jsonNumber(Number number) {
    std::string text;
    json::appendNumber(text, number);
    return text;
}

TEST(JsonTextTest, NumbersAreTheShortestThatReadBackTheSame) {
    EXPECT_EQ(jsonNumber(0.1), "0.1");
    EXPECT_EQ(jsonNumber(0.1F), "0.1");
    EXPECT_EQ(jsonNumber(std::nextafter(0.1, 1.0)), "0.10000000000000002");
    EXPECT_EQ(jsonNumber(1.0F / 3.0F), "0.33333334");
    EXPECT_EQ(jsonNumber(1.0 / 3.0), "0.3333333333333333");
    EXPECT_EQ(jsonNumber(4e9), "4e+09");
    EXPECT_EQ(jsonNumber(std::numeric_limits<std::int64_t>::max()), "9223372036854775807");
}

TEST(JsonTextTest, QuotesBackslashesAndControlCharactersAreEscaped) {
    EXPECT_EQ(jsonString("a\"b\\c/d"), R"("a\"b\\c/d")");
    EXPECT_EQ(jsonString("\b\f\n\r\t"), R"("\b\f\n\r\t")");
    EXPECT_EQ(jsonString(std::string_view("\0\x01\x1F\x7F", 4)), "\"\\u0000\\u0001\\u001f\x7F\"");
}

TEST(JsonTextTest, Utf8StaysAsItIs) {
    const char* text = "\"é → 叩 \xF0\x9F\x91\x8B \xEF\xBF\xBE\"";
    const std::string_view whole = text;
    EXPECT_EQ(jsonString(whole.substr(1, whole.size() - 2)), text);
}

TEST(JsonTextTest, EachMaximalSubpartThatIsNotUtf8BecomesAReplacementCharacter) {
    const std::string replaced = "\xEF\xBF\xBD";
    EXPECT_EQ(jsonString("a\xFFz"), "\"a" + replaced + "z\"");
    EXPECT_EQ(jsonString("a\xE2\x86z"), "\"a" + replaced + "z\"");                     // cut short: one
    EXPECT_EQ(jsonString("\xC0\xAF"), '"' + replaced + replaced + '"');                // never begins a character: each
    EXPECT_EQ(jsonString("\xED\xA0\x80"), '"' + replaced + replaced + replaced + '"'); // half of a surrogate pair
    EXPECT_EQ(jsonString("\xF0\x9F\x91"), '"' + replaced + '"');                       // cut short by the end
    EXPECT_EQ(jsonString("\xF4\x90\x80\x80"), '"' + replaced + replaced + replaced + replaced + '"'); // beyond Unicode
}

} // namespace
} // namespace quiverly
