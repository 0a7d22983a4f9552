#include "tools/record/OtherReaders.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "support/TemporaryFolder.h"

namespace quiverly {
namespace {

class OtherReadersTest : public testing::Test {
protected:
    // A process that has the file open.
    void addProcess(const std::string& number, const std::filesystem::path& file) const {
        folder.addFile("proc/" + number + "/comm", "quiverly\n");
        create_symlink(file, folder.addFolder("proc/" + number + "/fd") / "7");
    }

    std::vector<OtherReader> found() const { return otherReaders(axis, folder.path() / "proc"); }

    const TemporaryFolder folder;
    const std::filesystem::path axis = folder.addFile("in_accel_x_raw", "1\n");
};

TEST_F(OtherReadersTest, ThereAreNoneWhereNobodyHasTheFileOpen) {
    EXPECT_TRUE(found().empty());
    addProcess("12", folder.addFile("in_accel_y_raw", "1\n"));
    EXPECT_TRUE(found().empty());
}

TEST_F(OtherReadersTest, AProgramThatHasItOpenIsNamed) {
    addProcess("123", axis);
    folder.addFolder("proc/124/fd");
    folder.addFile("proc/version");
    ASSERT_EQ(found().size(), 1U);
    EXPECT_EQ(found()[0].process, 123);
    EXPECT_EQ(found()[0].name, "quiverly");
}

TEST_F(OtherReadersTest, TheProgramItselfIsNoOther) {
    addProcess(std::to_string(::getpid()), axis);
    EXPECT_TRUE(found().empty());
    const std::ifstream own(axis);
    EXPECT_TRUE(otherReaders(axis).empty());
}

TEST_F(OtherReadersTest, WhatIsNoProcessIsIgnored) {
    addProcess("self", axis);
    addProcess("12x", axis);
    EXPECT_TRUE(found().empty());
}

TEST_F(OtherReadersTest, AFileThatIsGoneHasNone) {
    EXPECT_TRUE(otherReaders(folder.path() / "gone", folder.path() / "proc").empty());
}

} // namespace
} // namespace quiverly
