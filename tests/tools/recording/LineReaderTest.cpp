#include "tools/recording/LineReader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace quiverly {
namespace {

using namespace std::string_view_literals;

using Lines = std::vector<std::string>;

// A stream that hands out at most so many bytes at a time, and counts how often it was asked.
struct Stream {
    std::string_view rest;
    std::size_t portion = 1'000'000;
    int asked = 0;
    int askedAtEnd = 0;

    LineReader::Read reader() {
        return [this](std::span<char> chunk) {
            ++asked;
            if (rest.empty() && ++askedAtEnd > 1) ADD_FAILURE() << "asked again after the end";
            const std::size_t count = std::min({rest.size(), portion, chunk.size()});
            std::copy_n(rest.begin(), count, chunk.begin());
            rest.remove_prefix(count);
            return count;
        };
    }
};

Lines takeAll(LineReader& reader) {
    Lines lines;
    for (auto line = reader.next(); line && *line; line = reader.next()) lines.emplace_back(**line);
    return lines;
}

Lines linesOf(std::string_view bytes, std::size_t bufferSize = 65536, std::size_t portion = 1'000'000) {
    Stream stream{bytes, portion};
    LineReader reader(stream.reader(), bufferSize);
    return takeAll(reader);
}

// A stream without an end.
LineReader::Read endless(std::string_view repeated) {
    return [repeated, position = std::size_t{0}](std::span<char> chunk) mutable {
        for (char& byte : chunk) byte = repeated[position++ % repeated.size()];
        return chunk.size();
    };
}

std::string manyDigits() {
    std::string digits;
    for (int number = 100'000; number < 200'000; ++number) digits += std::to_string(number);
    return digits;
}

TEST(LineReaderTest, ALineEndsInLineFeedOrCarriageReturnAndLineFeedOrWithTheStream) {
    EXPECT_EQ(linesOf(""), Lines{});
    EXPECT_EQ(linesOf("\n"), Lines{""});
    EXPECT_EQ(linesOf("a\nb\r\n\nc"), (Lines{"a", "b", "", "c"}));
    EXPECT_EQ(linesOf("a\r\r\n\rb\rc\n"), (Lines{"a\r", "\rb\rc"}));
    EXPECT_EQ(linesOf("a\n\r"), (Lines{"a", "\r"}));
}

TEST(LineReaderTest, TheLinesAreTheSameHoweverTheyArrive) {
    const auto bytes = "first\r\n\0\xFF\n\r\r\n12 345\n\n\r\nend\r"sv;
    const Lines lines = linesOf(bytes);
    EXPECT_EQ(lines.size(), 7U);
    for (std::size_t bufferSize = 1; bufferSize < 35; ++bufferSize) {
        for (std::size_t portion = 1; portion < 35; ++portion) EXPECT_EQ(linesOf(bytes, bufferSize, portion), lines);
    }
}

TEST(LineReaderTest, OfALongCommentTheBeginningIsLeft) {
    const std::string comment = std::string(100, ' ') + "#" + std::string(1000, '-') + "\t \t#";
    for (const std::string end : {"\n", "\r\n", "\r\r\n"}) {
        const Lines lines = linesOf(comment + end + "1\n", 64);
        ASSERT_EQ(lines.size(), 2U);
        EXPECT_TRUE(lines[0].starts_with(" #") || lines[0].starts_with("#")) << lines[0];
        EXPECT_LE(lines[0].size(), 64U);
        EXPECT_EQ(lines[1], "1");
    }
}

TEST(LineReaderTest, OfManyBlanksOneIsLeft) {
    const std::string blanks = std::string(100, ' ') + std::string(100, '\t');
    const Lines lines = linesOf(blanks + "\r\n" + blanks + "1" + blanks + "-" + blanks + "\n1  2\n", 32);
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0].find_first_not_of(" \t"), std::string::npos);
    EXPECT_EQ(lines[2], "1  2");
    std::string words = lines[1];
    std::ranges::replace(words, '\t', ' ');
    EXPECT_LT(words.size(), 32U);
    EXPECT_TRUE(words.starts_with(" 1 - ")) << words;
}

TEST(LineReaderTest, NumbersMayHaveAnyNumberOfDigits) {
    const std::string digits = manyDigits();
    const Lines lines{digits + " !threshold -0." + digits, "0 !clock -" + digits};
    EXPECT_EQ(linesOf(lines[0] + "\n" + lines[1] + "\r\n", 64), lines);
    EXPECT_EQ(linesOf(lines[0] + "\n" + lines[1] + "\r\n", 64, 7), lines);
}

TEST(LineReaderTest, ALineThatCannotBecomeRightIsCut) {
    for (const std::string_view repeated :
         {"y"sv, "\0"sv, "1 "sv, std::string_view("0 !stop "), std::string_view("\r"), std::string_view("ab")}) {
        LineReader reader(endless(repeated));
        const auto line = reader.next();
        ASSERT_TRUE(line && *line) << repeated;
        EXPECT_TRUE((*line)->starts_with(repeated));
    }
}

TEST(LineReaderTest, NothingIsAskedForBeforeItIsNeeded) {
    Stream stream{"ab\ncd\ne", 3};
    LineReader reader(stream.reader());
    EXPECT_EQ(stream.asked, 0);
    EXPECT_EQ(reader.next().value(), "ab");
    EXPECT_EQ(stream.asked, 1);
    EXPECT_EQ(reader.next().value(), "cd");
    EXPECT_EQ(stream.asked, 2);
    EXPECT_EQ(reader.next().value(), "e");
    EXPECT_EQ(stream.asked, 4);
    EXPECT_EQ(reader.next().value(), std::nullopt);
    EXPECT_EQ(reader.next().value(), std::nullopt);
    EXPECT_EQ(stream.asked, 4);
}

TEST(LineReaderTest, AReadErrorIsPassedOn) {
    const auto broken = std::make_error_code(std::errc::io_error);
    Stream stream{"ab\ncd", 4};
    LineReader reader([&, read = stream.reader()](std::span<char> chunk) {
        return stream.asked < 1 ? tl::expected<std::size_t, std::error_code>(read(chunk)) : tl::unexpected(broken);
    });
    EXPECT_EQ(reader.next().value(), "ab");
    EXPECT_EQ(reader.next().error(), broken);
}

} // namespace
} // namespace quiverly
