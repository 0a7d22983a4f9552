#include "tools/simulate/Script.h"

#include <gtest/gtest.h>

#include <string>

#include "support/TemporaryFolder.h"

namespace quiverly {
namespace {

class ScriptTest : public testing::Test {
protected:
    tl::expected<Script, std::string> read(const std::string& text) const {
        return readScript(folder.addFile("script", text));
    }

    std::string mistakeIn(const std::string& text) const {
        const auto script = read(text);
        return script ? "none" : script.error();
    }

    const TemporaryFolder folder;
    const std::filesystem::path file = folder.path() / "script";
};

TEST_F(ScriptTest, ATimedCommandIsDueAtItsMillisecond) {
    const auto timed = TimedCommand::parse(" 2.5\tslap 0.6");
    ASSERT_TRUE(timed);
    EXPECT_EQ(timed->due, std::chrono::milliseconds(2500));
    ASSERT_TRUE(std::holds_alternative<command::Slap>(timed->command));
    EXPECT_EQ(std::get<command::Slap>(timed->command).blow.peak, 0.6);
    EXPECT_EQ(timed->line, " 2.5\tslap 0.6");
}

TEST_F(ScriptTest, TheErrorSaysWhyALineIsNotATimedCommand) {
    for (const char* line : {"", " ", "slap 0.6", "-1 rest", "1", "1 slip", "9999999999 rest", "x rest", "1e3 rest"}) {
        const auto timed = TimedCommand::parse(line);
        ASSERT_FALSE(timed) << line;
        EXPECT_FALSE(timed.error().empty()) << line;
    }
}

TEST_F(ScriptTest, HoldsTheCommandsInOrderAndIgnoresRemarks) {
    const auto script = read("# a morning\n\n  \t\n0 rest\r\n1 slap 0.5\n1 quit");
    ASSERT_TRUE(script) << script.error();
    ASSERT_EQ(script->size(), 3U);
    EXPECT_TRUE(std::holds_alternative<command::Rest>((*script)[0].command));
    EXPECT_TRUE(std::holds_alternative<command::Slap>((*script)[1].command));
    EXPECT_TRUE(std::holds_alternative<command::Quit>((*script)[2].command));
}

TEST_F(ScriptTest, NamesTheLineThatIsWrong) {
    EXPECT_EQ(mistakeIn("0 rest\n\n1 slip\n"), file.string() + ":3: unknown command \"slip\"");
    EXPECT_EQ(mistakeIn("1 rest\n0.5 rest\n"), file.string() + ":2: this time is before that of the line before");
}

TEST_F(ScriptTest, SaysWhyAFileCannotBeRead) {
    const auto missing = readScript("/nonexistent/script");
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.error(), "/nonexistent/script: No such file or directory");
    const auto directory = readScript("/");
    ASSERT_FALSE(directory);
    EXPECT_EQ(directory.error(), "/: Is a directory");
}

} // namespace
} // namespace quiverly
