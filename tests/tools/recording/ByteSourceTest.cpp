#include "tools/recording/ByteSource.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>

namespace quiverly {
namespace {

// A stream that hands out at most so many bytes at a time, and counts how often it was asked after its end.
struct Stream {
    std::string_view rest;
    std::size_t portion;
    int asked = 0;
    int askedAfterEnd = 0;

    ByteSource::Read reader() {
        return [this](std::span<char> chunk) {
            ++asked;
            if (rest.empty() && ++askedAfterEnd > 1) ADD_FAILURE() << "asked again after the end";
            const std::size_t count = std::min({rest.size(), portion, chunk.size()});
            std::copy_n(rest.begin(), count, chunk.begin());
            rest.remove_prefix(count);
            return count;
        };
    }
};

std::string takeAll(ByteSource& source) {
    std::string bytes;
    for (int byte = source.peek(); byte != ByteSource::end; byte = source.peek()) {
        const int second = source.peekSecond();
        source.take();
        EXPECT_EQ(second, source.peek());
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

TEST(ByteSourceTest, TheBytesAreTheSameHoweverTheyArrive) {
    const std::string bytes("\r\n\0\xFF# line\r\r\n end\r", 18);
    for (std::size_t chunkSize = 2; chunkSize < 25; ++chunkSize) {
        for (std::size_t portion = 1; portion < 25; ++portion) {
            Stream stream{bytes, portion};
            ByteSource source(stream.reader(), chunkSize);
            EXPECT_EQ(takeAll(source), bytes);
            EXPECT_EQ(source.peekSecond(), ByteSource::end);
        }
    }
}

TEST(ByteSourceTest, ALineIsSkippedUpToItsLineFeedOrTheEnd) {
    for (std::size_t portion = 1; portion < 25; ++portion) {
        Stream stream{"first\nsecond\n\nlast", portion};
        ByteSource source(stream.reader(), 4);
        source.skipLine();
        EXPECT_EQ(source.peek(), 's');
        source.skipLine();
        EXPECT_EQ(source.peek(), '\n');
        source.skipLine();
        EXPECT_EQ(source.peek(), 'l');
        source.skipLine();
        EXPECT_EQ(source.peek(), ByteSource::end);
    }
}

TEST(ByteSourceTest, NothingIsAskedForBeforeItIsNeeded) {
    Stream stream{"ab\r\n", 1};
    ByteSource source(stream.reader());
    EXPECT_EQ(stream.asked, 0);
    EXPECT_EQ(source.peek(), 'a');
    EXPECT_EQ(stream.asked, 1);
    source.take();
    EXPECT_EQ(stream.asked, 1);
}

TEST(ByteSourceTest, AnEmptyStreamHasEnded) {
    Stream stream{"", 1};
    ByteSource source(stream.reader());
    EXPECT_EQ(source.peek(), ByteSource::end);
    source.skipLine();
    EXPECT_EQ(source.peekSecond(), ByteSource::end);
}

} // namespace
} // namespace quiverly
