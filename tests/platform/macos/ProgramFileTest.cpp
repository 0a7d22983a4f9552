#include "platform/shared/program_file.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/TemporaryFolder.h"
#include "support/apple/AppleFrameworks.h"

namespace quiverly {
namespace {

// The macOS implementation of program_file.h. The loader tells a path that was enough to start the program.
class ProgramFileTest : public testing::Test {
protected:
    AppleFrameworks apple;
    TemporaryFolder folder;
};

TEST_F(ProgramFileTest, APathOfAnyLengthIsTakenWhole) {
    const std::string deep(200, 'd');
    const auto program = folder.addFile(std::filesystem::path(deep) / deep / deep / deep / deep / deep / "quiverly");
    apple.executable = program;
    EXPECT_EQ(programFile(), std::filesystem::canonical(program));
}

TEST_F(ProgramFileTest, LinksAndDetoursOnTheWayToTheFileAreResolved) {
    const auto program = folder.addFile("build/bin/quiverly");
    std::filesystem::create_directory_symlink("build/bin", folder.path() / "tools");
    apple.executable = folder.path() / "build" / ".." / "tools" / "quiverly";
    EXPECT_EQ(programFile(), std::filesystem::canonical(program));
}

TEST_F(ProgramFileTest, IsEmptyWhenThereIsNoSuchFileAnyMore) {
    apple.executable = folder.path() / "quiverly";
    EXPECT_EQ(programFile(), std::filesystem::path());
}

} // namespace
} // namespace quiverly
