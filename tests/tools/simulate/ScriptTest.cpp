#include "tools/simulate/Script.h"

#include <gtest/gtest.h>

#include <string>

#include "support/TemporaryFolder.h"

namespace quiverly {
namespace {

class ScriptTest : public testing::Test {
protected:
    std::variant<Script, command::Mistake> read(const std::string& text) const {
        return readScript(folder.addFile("script", text));
    }

    std::string mistakeIn(const std::string& text) const {
        const auto script = read(text);
        const auto* mistake = std::get_if<command::Mistake>(&script);
        return mistake != nullptr ? mistake->text : "";
    }

    const TemporaryFolder folder;
    const std::filesystem::path file = folder.path() / "script";
};

TEST_F(ScriptTest, HoldsTheCommandsInOrderAndPassesOverRemarks) {
    const auto script = read("# a morning\n\n  \t\n0 rest\r\n1 slap 0.5\n1 quit");
    ASSERT_TRUE(std::holds_alternative<Script>(script));
    EXPECT_EQ(std::get<Script>(script).size(), 3U);
}

TEST_F(ScriptTest, NamesTheLineThatIsWrong) {
    EXPECT_EQ(mistakeIn("0 rest\n\n1 slip\n"), file.string() + ":3: unknown command \"slip\"");
    EXPECT_EQ(mistakeIn("1 rest\n0.5 rest\n"), file.string() + ":2: this time is before that of the line before");
}

TEST_F(ScriptTest, SaysWhyAFileCannotBeRead) {
    const auto missing = readScript("/nonexistent/script");
    ASSERT_TRUE(std::holds_alternative<command::Mistake>(missing));
    EXPECT_EQ(std::get<command::Mistake>(missing).text, "/nonexistent/script: No such file or directory");
    const auto folder = readScript("/");
    ASSERT_TRUE(std::holds_alternative<command::Mistake>(folder));
    EXPECT_EQ(std::get<command::Mistake>(folder).text, "/: Is a directory");
}

} // namespace
} // namespace quiverly
