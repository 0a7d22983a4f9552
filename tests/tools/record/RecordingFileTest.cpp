#include "tools/record/RecordingFile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <string>
#include <variant>
#include <vector>

#include "support/Files.h"
#include "support/TemporaryFolder.h"
#include "tools/recording/Recording.h"

namespace quiverly {
namespace {

using namespace std::chrono_literals;

constexpr std::array<std::uint8_t, 4> report = {0x01, 0xA5, 0x00, 0xFF};

class RecordingFileTest : public testing::Test {
protected:
    FileDescriptor create() const {
        auto created = RecordingFile::create(path);
        EXPECT_TRUE(created);
        return created ? *std::move(created) : FileDescriptor();
    }

    const TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / "slap.txt";
};

TEST_F(RecordingFileTest, HoldsCommentsCommandsAndReportsInTheOrderInWhichTheyWereAdded) {
    RecordingFile file(create());
    file.addComment("my laptop\non the desk\x7F");
    file.addCommand("start", 0ns);
    file.addReport(report, 1'234'567'891ns);
    file.addReport({}, 3s);
    EXPECT_EQ(file.reports(), 2);
    EXPECT_EQ(file.error(), "");
    EXPECT_EQ(bytesOf(path), "# my laptop on the desk \n"
                             "0.000000 !start\n"
                             "1.234567 01a500ff\n"
                             "3.000000 -\n");
}

TEST_F(RecordingFileTest, IsARecordingThatCanBeRead) {
    RecordingFile file(create());
    file.addComment("é");
    file.addCommand("threshold 0.12", 0ns);
    file.addReport(report, 12h);
    Recording recording(path.string(), [] {});
    const auto first = recording.next();
    ASSERT_TRUE(first && *first);
    EXPECT_TRUE(std::holds_alternative<action::Threshold>((*first)->action));
    const auto second = recording.next();
    ASSERT_TRUE(second && *second);
    EXPECT_EQ((*second)->seconds, 12 * 3600);
    EXPECT_TRUE(std::ranges::equal(std::get<action::Report>((*second)->action).bytes, report));
    const auto end = recording.next();
    EXPECT_TRUE(end && !*end);
}

TEST_F(RecordingFileTest, IsReadByItsUserOnly) {
    const FileDescriptor file = create();
    struct stat status = {};
    ASSERT_EQ(::fstat(file.get(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(RecordingFileTest, AFileThatIsThereIsLeftAlone) {
    folder.addFile("slap.txt", "precious");
    const auto created = RecordingFile::create(path);
    ASSERT_FALSE(created);
    EXPECT_EQ(created.error(), path.string() + ": File exists");
    EXPECT_EQ(bytesOf(path), "precious");
}

TEST_F(RecordingFileTest, AFolderThatIsNotThereIsSaidToBe) {
    EXPECT_EQ(RecordingFile::create("/nowhere/slap.txt").error(), "/nowhere/slap.txt: No such file or directory");
}

TEST_F(RecordingFileTest, AFullDiskIsSaidAndNothingIsAddedAfterwards) {
    RecordingFile file(FileDescriptor(::open("/dev/full", O_WRONLY | O_CLOEXEC)));
    file.addReport(report, 0ns);
    EXPECT_EQ(file.error(), "No space left on device");
    file.addReport(report, 1ms);
    EXPECT_EQ(file.error(), "No space left on device");
}

TEST_F(RecordingFileTest, TheFileEndsWithAWholeLineWhenOnlyPartOfOneFits) {
    rlimit former = {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &former), 0);
    const rlimit most{.rlim_cur = 30, .rlim_max = former.rlim_max};
    const auto formerHandler = std::signal(SIGXFSZ, SIG_IGN);
    RecordingFile file(create());
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &most), 0);
    file.addReport(report, 1s);
    file.addReport(report, 2s);
    const std::string error = file.error();
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &former), 0);
    std::signal(SIGXFSZ, formerHandler);
    EXPECT_NE(error, "");
    EXPECT_EQ(bytesOf(path), "1.000000 01a500ff\n");
}

} // namespace
} // namespace quiverly
