#include "tools/recording/Recording.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "support/TemporaryFolder.h"

namespace quiverly {
namespace {

class RecordingTest : public ::testing::Test {
protected:
    std::string file(const std::string& content) const {
        const auto file = folder.path() / "recording.txt";
        std::ofstream(file, std::ios::binary) << content;
        return file.string();
    }

    const TemporaryFolder folder;
};

TEST_F(RecordingTest, GivesOutTheLinesThatSaySomething) {
    Recording recording(file("# one\r\n\n0 !start\n\t\n2.5 !stop"));
    EXPECT_EQ(recording.next().value()->seconds, 0.0);
    EXPECT_EQ(recording.next().value()->seconds, 2.5);
    EXPECT_FALSE(recording.next().value());
}

TEST_F(RecordingTest, AMalformedLineIsReportedWithItsNumberAndEndsTheRecording) {
    const std::string name = file("# one\r\n\n0 !start\n\r\n0 !stopp\n0 !stop\n");
    Recording recording(name);
    EXPECT_TRUE(recording.next().value());
    EXPECT_EQ(recording.next().error(), name + ":5: there is no such command");
}

TEST_F(RecordingTest, AFileThatCannotBeReadIsReportedWithTheReason) {
    const std::string missing = folder.path() / "missing";
    EXPECT_EQ(Recording(missing).next().error(), missing + ": No such file or directory");
    const std::string directory = folder.path();
    EXPECT_EQ(Recording(directory).next().error(), directory + ": Is a directory");
}

TEST_F(RecordingTest, TellsWhenItIsAboutToRead) {
    int reads = 0;
    Recording recording(file("0 !start\n1 !stop\n"), [&reads] { ++reads; });
    EXPECT_EQ(reads, 0);
    EXPECT_TRUE(recording.next().value());
    EXPECT_TRUE(recording.next().value());
    EXPECT_EQ(reads, 1);
    EXPECT_FALSE(recording.next().value());
    EXPECT_EQ(reads, 2);
}

} // namespace
} // namespace quiverly
