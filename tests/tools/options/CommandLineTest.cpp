#include "tools/options/CommandLine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "identity.h"

namespace quiverly {
namespace {

using Arguments = std::vector<const char*>;

tl::expected<std::string, std::string> shortText(const std::string& text) {
    if (text.size() > 7) return tl::make_unexpected("too long");
    return text;
}

// A program with an argument, a flag and an option.
class CommandLineTest : public ::testing::Test {
protected:
    CommandLineTest() {
        line.addValue("FILE", file, shortText, "a file");
        line.addFlag("--loud", loud, "make noise");
        line.addValue("--name", name, shortText, "its name");
    }

    // What is said is one line, which names what is wrong, and where to find help.
    void expectUnusable(const Arguments& arguments, const std::string& named) {
        const auto parsed = line.read(arguments);
        ASSERT_FALSE(parsed) << ::testing::PrintToString(arguments);
        EXPECT_EQ(parsed.error().status, unusable);
        const std::string& text = parsed.error().text;
        EXPECT_TRUE(text.starts_with("quiverly-try: ")) << text;
        EXPECT_TRUE(text.ends_with("\nTry 'quiverly-try --help'.\n")) << text;
        EXPECT_EQ(std::ranges::count(text, '\n'), 2) << text;
        EXPECT_NE(text.find(named), std::string::npos) << text;
    }

    CommandLine line{"quiverly-try", "Tries.", "Exit status: 0 when tried."};
    std::string file;
    std::string name = "none";
    bool loud = false;
};

TEST_F(CommandLineTest, ArgumentsAndOptionsComeInAnyOrder) {
    ASSERT_TRUE(line.read(Arguments{"--loud", "r", "--name=x=y"}));
    EXPECT_EQ(file, "r");
    EXPECT_EQ(name, "x=y");
    EXPECT_TRUE(loud);
    ASSERT_TRUE(line.read(Arguments{"--name", "-z", "q"}));
    EXPECT_EQ(file, "q");
    EXPECT_EQ(name, "-z");
}

TEST_F(CommandLineTest, WhatIsNotGivenStaysAsItWas) {
    ASSERT_TRUE(line.read(Arguments{"r"}));
    EXPECT_EQ(name, "none");
    EXPECT_FALSE(loud);
}

TEST_F(CommandLineTest, AValueMayBeEmpty) {
    for (const Arguments& arguments : {Arguments{"--name=", "r"}, Arguments{"--name", "", "r"}}) {
        name = "none";
        ASSERT_TRUE(line.read(arguments));
        EXPECT_EQ(name, "");
        EXPECT_EQ(file, "r");
    }
}

TEST_F(CommandLineTest, OfARepeatedOptionTheLastCounts) {
    ASSERT_TRUE(line.read(Arguments{"--name=a", "--loud", "r", "--name", "b", "--loud"}));
    EXPECT_EQ(name, "b");
    EXPECT_TRUE(loud);
}

TEST_F(CommandLineTest, AfterTwoDashesNothingIsAnOption) {
    for (const char* argument : {"-", "--", "-x", "--name=", "[a]", ""}) {
        ASSERT_TRUE(line.read(Arguments{"--loud", "--", argument})) << argument;
        EXPECT_EQ(file, argument);
    }
    expectUnusable({"a", "--", "--loud"}, "--loud");
}

TEST_F(CommandLineTest, OfAListOfArgumentsAllCountInTheirOrder) {
    std::vector<std::string> more;
    line.addValues("MORE", more, "more files");
    ASSERT_TRUE(line.read(Arguments{"a", "c", "--loud", "b", "--", "--name"}));
    EXPECT_EQ(file, "a");
    EXPECT_EQ(more, (std::vector<std::string>{"c", "b", "--name"}));
    EXPECT_TRUE(loud);
}

TEST_F(CommandLineTest, AListOfArgumentsMayBeEmpty) {
    std::vector<std::string> more;
    line.addValues("MORE", more, "more files");
    ASSERT_TRUE(line.read(Arguments{"a"}));
    EXPECT_TRUE(more.empty());
}

TEST_F(CommandLineTest, TellsWhyArgumentsCannotBeUsed) {
    expectUnusable({}, "FILE");
    expectUnusable({"a", "surplus"}, "surplus");
    expectUnusable({"a", "--fast"}, "--fast");
    expectUnusable({"a", "--name"}, "--name");
    expectUnusable({"a", "--name", "much longer"}, "--name: too long");
    expectUnusable({"much longer"}, "FILE: too long");
}

TEST_F(CommandLineTest, AFlagTakesNoValue) {
    for (const char* flag : {"--loud=", "--loud=x", "--loud=false", "--help=x", "--version=x"}) {
        expectUnusable({flag, "r"}, "");
    }
}

TEST_F(CommandLineTest, HelpTellsEverythingAndNeedsNothingElse) {
    const auto parsed = line.read(Arguments{"--loud", "--help"});
    ASSERT_FALSE(parsed);
    EXPECT_EQ(parsed.error().status, success);
    for (const char* part : {"Tries.", "Usage: quiverly-try [OPTIONS] FILE\n", "FILE", "a file", "--loud", "make noise",
                             "--name", "its name", "--help", "--version", "Exit status: 0 when tried.\n"}) {
        EXPECT_NE(parsed.error().text.find(part), std::string::npos) << part;
    }
}

TEST_F(CommandLineTest, TheVersionIsThatOfQuiverly) {
    const auto parsed = line.read(Arguments{"--version"});
    ASSERT_FALSE(parsed);
    EXPECT_EQ(parsed.error().status, success);
    EXPECT_EQ(parsed.error().text, std::string("quiverly-try ") + identity::version + '\n');
}

} // namespace
} // namespace quiverly
