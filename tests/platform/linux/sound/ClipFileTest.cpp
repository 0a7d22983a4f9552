#include "platform/linux/sound/ClipFile.h"

#include <gtest/gtest.h>

#include <string>

#include "support/TemporaryFolder.h"

namespace quiverly {
namespace {

class ClipFileTest : public testing::Test {
protected:
    static std::string read(ClipFile& file, std::size_t size) {
        std::string text(size, '\0');
        std::size_t done = 0;
        while (const std::size_t more = file.read(std::as_writable_bytes(std::span(text).subspan(done)))) done += more;
        return text.substr(0, done);
    }

    ClipFile open(const std::string& content) const { return ClipFile(folder.addFile("clip", content)); }

    const TemporaryFolder folder;
};

TEST_F(ClipFileTest, IsReadInOrder) {
    ClipFile file = open("abcdef");
    EXPECT_EQ(read(file, 2), "ab");
    EXPECT_EQ(read(file, 3), "cde");
    EXPECT_EQ(read(file, 3), "f");
    EXPECT_EQ(read(file, 3), "");
}

TEST_F(ClipFileTest, SeeksAsAFileDoes) {
    ClipFile file = open("abcdef");
    EXPECT_EQ(file.seek(4, SEEK_SET), 4);
    EXPECT_EQ(read(file, 1), "e");
    EXPECT_EQ(file.seek(-3, SEEK_CUR), 2);
    EXPECT_EQ(read(file, 1), "c");
    EXPECT_EQ(file.seek(-1, SEEK_END), 5);
    EXPECT_EQ(read(file, 9), "f");
    EXPECT_EQ(file.seek(10, SEEK_SET), 10);
    EXPECT_EQ(read(file, 1), "");
    EXPECT_EQ(file.seek(-11, SEEK_CUR), -1);
    EXPECT_EQ(file.seek(0, SEEK_CUR), 10);
}

TEST_F(ClipFileTest, GoesOnBeyondItsBuffer) {
    std::string content;
    for (std::size_t byte = 0; byte < 3 * ClipFile::bufferSize; ++byte) content += static_cast<char>('a' + byte % 23);
    ClipFile file = open(content);
    EXPECT_EQ(read(file, content.size() + 1), content);
    EXPECT_EQ(file.seek(5, SEEK_SET), 5);
    EXPECT_EQ(read(file, 7), content.substr(5, 7));
}

TEST_F(ClipFileTest, EndsWhenTooMuchIsReadForOnePiece) {
    constexpr std::size_t most = ClipFile::mostReads * ClipFile::bufferSize;
    ClipFile file = open(std::string(2 * most, 'x'));
    EXPECT_EQ(read(file, 2 * most).size(), most);
    EXPECT_EQ(read(file, 1), "");
    file.beginPiece();
    EXPECT_EQ(read(file, 2 * most).size(), most);
}

TEST_F(ClipFileTest, SeekingToAndFroEndsItToo) {
    ClipFile file = open(std::string(2 * ClipFile::bufferSize, 'x'));
    int reads = 0;
    do {
        file.seek(reads % 2 == 0 ? 0 : static_cast<off_t>(ClipFile::bufferSize), SEEK_SET);
    } while (read(file, 1) == "x" && ++reads < 1'000);
    EXPECT_EQ(reads, ClipFile::mostReads);
}

TEST_F(ClipFileTest, AMissingFileIsEmpty) {
    ClipFile missing(folder.path() / "missing");
    EXPECT_EQ(read(missing, 1), "");
    EXPECT_EQ(missing.seek(0, SEEK_END), -1);
    ClipFile device("/dev/zero");
    EXPECT_EQ(read(device, 1), "");
}

} // namespace
} // namespace quiverly
