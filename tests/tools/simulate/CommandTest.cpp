#include "tools/simulate/Command.h"

#include <gtest/gtest.h>

namespace quiverly::command {
namespace {

// The command, which has to be of that kind.
template<class Kind>
Kind parsed(std::string_view line) {
    const auto command = parse(line);
    const auto* kind = command ? std::get_if<Kind>(&*command) : nullptr;
    EXPECT_NE(kind, nullptr) << line;
    return kind != nullptr ? *kind : Kind{};
}

TEST(CommandTest, ASlapHasAPeakAndPerhapsAFrequencyAndADecay) {
    const Blow plain = parsed<Slap>("slap 0.6").blow;
    EXPECT_EQ(plain.peak, 0.6);
    EXPECT_EQ(plain.frequency, 18.0);
    EXPECT_EQ(plain.decay, 0.05);
    const Blow full = parsed<Slap>(" slap\t20  500 10 \r").blow;
    EXPECT_EQ(full.peak, 20.0);
    EXPECT_EQ(full.frequency, 500.0);
    EXPECT_EQ(full.decay, 10.0);
}

TEST(CommandTest, ATiltHasADirection) {
    const Acceleration up = parsed<Tilt>("tilt -1 0 0.5").up;
    EXPECT_EQ(up.x, -1.0);
    EXPECT_EQ(up.y, 0.0);
    EXPECT_EQ(up.z, 0.5);
}

TEST(CommandTest, EveryPlainCommandIsKnown) {
    parsed<Rest>("rest");
    parsed<Type>("type");
    parsed<Walk>("walk");
    parsed<Bump>("bump");
    parsed<Lid>("lid");
    parsed<Lift>("lift");
    parsed<Sleep>("sleep");
    parsed<Wake>("wake");
    parsed<Vanish>("vanish");
    parsed<Appear>("appear");
    parsed<Deny>("deny");
    parsed<Allow>("allow");
    parsed<Quit>("quit");
}

TEST(CommandTest, TheErrorSaysWhyALineIsNotACommand) {
    using namespace std::string_view_literals;
    for (const auto line : {"slip"sv,         "Slap 1"sv,      "slap"sv,         "slap x"sv,
                            "slap 0"sv,       "slap -1"sv,     "slap 20.1"sv,    "slap 1e1"sv,
                            "slap nan"sv,     "slap inf"sv,    "slap +1"sv,      "slap .5"sv,
                            "slap 1."sv,      "slap 0x1"sv,    "slap 1,5"sv,     "slap 1 0"sv,
                            "slap 1 501"sv,   "slap 1 18 0"sv, "slap 1 18 11"sv, "slap 1 18 0.1 1"sv,
                            "tilt"sv,         "tilt 1 2"sv,    "tilt 0 0 0"sv,   "tilt 1 2 x"sv,
                            "tilt 1 2 3 4"sv, "rest 1"sv,      "bump 1"sv,       "quit now"sv,
                            "slap 0.5\0"sv,   "\0"sv,          "\xFF\xFE"sv,     ""sv}) {
        const auto command = parse(line);
        ASSERT_FALSE(command) << line;
        EXPECT_FALSE(command.error().empty()) << line;
    }
}

TEST(CommandTest, ALineThatIsEmptyOrBeginsWithAHashIsARemark) {
    for (const char* line : {"", " \t\r", "#", "  # slap 1"}) EXPECT_TRUE(isRemark(line)) << line;
    for (const char* line : {"slap 1", " rest # not a remark"}) EXPECT_FALSE(isRemark(line)) << line;
}

} // namespace
} // namespace quiverly::command
