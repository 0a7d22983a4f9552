#include <gtest/gtest.h>

#include "tools/simulate/Command.h"

namespace quiverly::command {
namespace {

template<class Expected>
const Expected& expect(const std::variant<Command, Mistake>& parsed) {
    static const Expected none{};
    const auto* command = std::get_if<Command>(&parsed);
    const auto* expected = command != nullptr ? std::get_if<Expected>(command) : nullptr;
    EXPECT_NE(expected, nullptr);
    return expected != nullptr ? *expected : none;
}

TEST(CommandTest, ASlapHasAPeakAndPerhapsAFrequencyAndADecay) {
    const auto plain = parse("slap 0.6");
    EXPECT_EQ(expect<Slap>(plain).blow.peak, 0.6);
    EXPECT_EQ(expect<Slap>(plain).blow.frequency, 18.0);
    EXPECT_EQ(expect<Slap>(plain).blow.decay, 0.05);
    const auto full = parse(" slap\t20  500 10 \r");
    EXPECT_EQ(expect<Slap>(full).blow.peak, 20.0);
    EXPECT_EQ(expect<Slap>(full).blow.frequency, 500.0);
    EXPECT_EQ(expect<Slap>(full).blow.decay, 10.0);
}

TEST(CommandTest, ATiltHasADirection) {
    const auto parsed = parse("tilt -1 0 0.5");
    EXPECT_EQ(expect<Tilt>(parsed).up.x, -1.0);
    EXPECT_EQ(expect<Tilt>(parsed).up.y, 0.0);
    EXPECT_EQ(expect<Tilt>(parsed).up.z, 0.5);
}

TEST(CommandTest, EveryPlainCommandIsKnown) {
    expect<Rest>(parse("rest"));
    expect<Type>(parse("type"));
    expect<Walk>(parse("walk"));
    expect<Sleep>(parse("sleep"));
    expect<Wake>(parse("wake"));
    expect<Vanish>(parse("vanish"));
    expect<Appear>(parse("appear"));
    expect<Deny>(parse("deny"));
    expect<Allow>(parse("allow"));
    expect<Quit>(parse("quit"));
}

TEST(CommandTest, WhatIsNoCommandSaysWhy) {
    using namespace std::string_view_literals;
    for (const auto line : {"slip"sv,     "Slap 1"sv,     "slap"sv,        "slap x"sv,       "slap 0"sv,
                            "slap -1"sv,  "slap 20.1"sv,  "slap 1e1"sv,    "slap nan"sv,     "slap inf"sv,
                            "slap 1 0"sv, "slap 1 501"sv, "slap 1 18 0"sv, "slap 1 18 11"sv, "slap 1 18 0.1 1"sv,
                            "tilt"sv,     "tilt 1 2"sv,   "tilt 0 0 0"sv,  "tilt 1 2 x"sv,   "tilt 1 2 3 4"sv,
                            "rest 1"sv,   "quit now"sv,   "slap 0.5\0"sv,  "\0"sv,           "\xFF\xFE"sv,
                            ""sv}) {
        const auto parsed = parse(line);
        const auto* mistake = std::get_if<Mistake>(&parsed);
        ASSERT_NE(mistake, nullptr) << line;
        EXPECT_FALSE(mistake->text.empty()) << line;
    }
}

TEST(CommandTest, ATimedCommandIsDueAtItsMillisecond) {
    const auto parsed = parseTimed("2.5 slap 0.6");
    const auto* timed = std::get_if<Timed>(&parsed);
    ASSERT_NE(timed, nullptr);
    EXPECT_EQ(timed->due, std::chrono::milliseconds(2500));
    EXPECT_EQ(expect<Slap>(timed->command).blow.peak, 0.6);
    for (const char* line : {"slap 0.6", "-1 rest", "1", "1 slip", "9999999999 rest", "x rest"}) {
        EXPECT_TRUE(std::holds_alternative<Mistake>(parseTimed(line))) << line;
    }
}

} // namespace
} // namespace quiverly::command
