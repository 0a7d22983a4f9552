#include "tools/replay/Options.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace quiverly {
namespace {

using Arguments = std::vector<const char*>;

Options options(const Arguments& arguments) {
    auto parsed = parseOptions(arguments);
    if (!parsed) ADD_FAILURE() << parsed.error().text;
    return parsed.value_or(Options{});
}

void expectUnusable(const Arguments& arguments) {
    const auto parsed = parseOptions(arguments);
    ASSERT_FALSE(parsed) << ::testing::PrintToString(arguments);
    EXPECT_EQ(parsed.error().status, unusable) << ::testing::PrintToString(arguments);
}

TEST(OptionsTest, ARecordingIsEnough) {
    const Options parsed = options({"some.txt"});
    EXPECT_EQ(parsed.recording, "some.txt");
    EXPECT_FALSE(parsed.samples);
    EXPECT_EQ(parsed.pack, std::nullopt);
    EXPECT_EQ(parsed.threshold, std::nullopt);
    EXPECT_EQ(parsed.resources, std::nullopt);
    EXPECT_EQ(parsed.seed, 0U);
    EXPECT_EQ(parsed.plot, std::nullopt);
}

TEST(OptionsTest, AValueStandsInTheNextArgumentOrBehindAnEqualsSign) {
    for (const Arguments& arguments :
         {Arguments{"--samples", "--pack", "pain", "--threshold", "-0.5", "--resources", "a=b", "--seed", "007", "r"},
          Arguments{"r", "--seed=7", "--resources=a=b", "--threshold=-0.5", "--pack=pain", "--samples"}}) {
        const Options parsed = options(arguments);
        EXPECT_EQ(parsed.recording, "r");
        EXPECT_TRUE(parsed.samples);
        EXPECT_EQ(parsed.pack, "pain");
        EXPECT_EQ(parsed.threshold, -0.5);
        EXPECT_EQ(parsed.resources, "a=b");
        EXPECT_EQ(parsed.seed, 7U);
    }
}

TEST(OptionsTest, AValueMayBeAnyText) {
    EXPECT_EQ(options({"--pack=", "r"}).pack, "");
    EXPECT_EQ(options({"--pack", "", "r"}).pack, "");
    EXPECT_EQ(options({"--pack", "--samples", "r"}).pack, "--samples");
    EXPECT_EQ(options({"--pack", "--", "r"}).pack, "--");
    EXPECT_EQ(options({"--pack", "\xFF\n", "r"}).pack, "\xFF\n");
}

TEST(OptionsTest, TheLastOfARepeatedOptionCounts) {
    const Options parsed = options({"--pack=a", "--seed=1", "--threshold=1", "--resources=x", "--samples", "r",
                                    "--pack=b", "--seed=2", "--threshold=2", "--resources=y", "--samples"});
    EXPECT_EQ(parsed.pack, "b");
    EXPECT_EQ(parsed.seed, 2U);
    EXPECT_EQ(parsed.threshold, 2.0);
    EXPECT_EQ(parsed.resources, "y");
}

TEST(OptionsTest, ADashIsStandardInputAndTwoEndTheOptions) {
    EXPECT_EQ(options({"-"}).recording, "-");
    EXPECT_EQ(options({"--", "-"}).recording, "-");
    EXPECT_EQ(options({"--", "--samples"}).recording, "--samples");
    EXPECT_EQ(options({"--", "--"}).recording, "--");
    EXPECT_EQ(options({"--samples", "--", "-x"}).recording, "-x");
    EXPECT_EQ(options({"r", "--"}).recording, "r");
    EXPECT_EQ(options({""}).recording, "");
}

TEST(OptionsTest, ThereIsExactlyOneRecording) {
    expectUnusable({});
    expectUnusable({"--samples"});
    expectUnusable({"--"});
    expectUnusable({"a", "b"});
    expectUnusable({"-", "-"});
    expectUnusable({"a", "--", "--samples"});
}

TEST(OptionsTest, APlotIsAnSvgFile) {
    EXPECT_EQ(options({"--plot=a b.svg", "r"}).plot, "a b.svg");
    for (const char* const name : {"--plot=r.txt", "--plot=", "--plot=svg"}) expectUnusable({name, "r"});
}

TEST(OptionsTest, UnknownOptionsAreUnusable) {
    for (const char* option :
         {"-s", "--sample", "--samples2", "--Samples", "--pac=x", "-=", "---", "--=x", "-h", "-1"}) {
        expectUnusable({option, "r"});
    }
}

TEST(OptionsTest, AMissingValueOrOneTooManyIsUnusable) {
    for (const char* option : {"--pack", "--threshold", "--resources", "--seed"}) expectUnusable({"r", option});
    expectUnusable({"--resources=", "r"});
    for (const char* option : {"--samples=", "--samples=x", "--help=x", "--version=1"}) expectUnusable({option, "r"});
}

TEST(OptionsTest, AThresholdIsADecimalNumber) {
    for (const char* number : {"", "x", "1e3", ".5", "5.", "+1", " 1", "0x1", "nan", "inf", "1,5"}) {
        expectUnusable({"--threshold", number, "r"});
    }
    const std::string infinite = "--threshold=1" + std::string(400, '0');
    expectUnusable({infinite.c_str(), "r"});
}

TEST(OptionsTest, ASeedIsAnUnsigned64BitInteger) {
    EXPECT_EQ(options({"--seed", "18446744073709551615", "r"}).seed, std::numeric_limits<std::uint64_t>::max());
    for (const char* number : {"", "-1", "+1", " 1", "1 ", "1.0", "0x1", "18446744073709551616"}) {
        expectUnusable({"--seed", number, "r"});
    }
}

} // namespace
} // namespace quiverly
