#include "tools/replay/EventPrinter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tools/replay/JsonText.h"

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

class EventPrinterTest : public ::testing::Test {
protected:
    std::string text;
    EventPrinter events{text};
};

TEST_F(EventPrinterTest, EveryEventIsOneObjectALine) {
    using Kind = BonkoEngine::Phase::Kind;
    events.setTime(12.5);
    events.sample(0.25, -1.0, 1e-9);
    events.slap(3, 0.1);
    events.clip("some/where/audio/sexy/28.mp3", 0.57F);
    events.checkSlap(0.35);
    events.phase({Kind::idle});
    events.phase({Kind::listening});
    events.phase({Kind::error, "Privacy → \"no\""});
    events.settingsPage("https://example.org/?a&b");
    events.end({.reports = 4, .samples = 3, .slaps = 2, .clips = 1});
    EXPECT_EQ(text, R"({"t":12.5,"event":"sample","x":0.25,"y":-1,"z":1e-09}
{"t":12.5,"event":"slap","count":3,"amplitude":0.1}
{"t":12.5,"event":"clip","file":"sexy/28.mp3","volume":0.57}
{"t":12.5,"event":"check-slap","amplitude":0.35}
{"t":12.5,"event":"phase","phase":"idle"}
{"t":12.5,"event":"phase","phase":"listening"}
{"t":12.5,"event":"phase","phase":"error","message":"Privacy → \"no\""}
{"t":12.5,"event":"settings-page","url":"https://example.org/?a&b"}
{"event":"end","reports":4,"samples":3,"slaps":2,"clips":1}
)");
}

TEST_F(EventPrinterTest, AClipIsNamedByItsFolderAndItsName) {
    events.clip("lizard/b\xFF\"\n.mp3", 1.0F);
    EXPECT_EQ(text, "{\"t\":0,\"event\":\"clip\",\"file\":\"lizard/b\xEF\xBF\xBD\\\"\\n.mp3\",\"volume\":1}\n");
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

TEST(JsonTextTest, EachMaximalSubpartThatIsNoUtf8BecomesAReplacementCharacter) {
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
