#include "tools/simulate/WindowMessage.h"

#include <gtest/gtest.h>

namespace quiverly::window {
namespace {

std::string withoutEnd(std::string line) {
    EXPECT_EQ(line.back(), '\n');
    line.pop_back();
    EXPECT_EQ(line.find('\n'), std::string::npos);
    return line;
}

TEST(WindowMessageTest, EveryMessageIsTheSameAfterItsLine) {
    const Message messages[] = {
        Report{.millisecond = 0, .bytes = {}},
        Report{.millisecond = 9'007'199'254'740'993, .bytes = {0x00, 0x7f, 0x80, 0xff}},
        Report{.millisecond = 1, .bytes = std::vector<std::uint8_t>(256, 0xa5)},
        Dropped{18'446'744'073'709'551'615U},
        Reporting{4711},
        Silent{},
        Obeyed{"slap 0.6  18"},
        Problem{"unknown command \"slip\""},
    };
    for (const Message& message : messages) {
        const std::string line = withoutEnd(lineOf(message));
        const auto parsed = parse(line);
        ASSERT_TRUE(parsed) << line;
        EXPECT_EQ(*parsed, message) << line;
    }
}

TEST(WindowMessageTest, ALineSaysWhatItIsAndWhatBelongsToIt) {
    EXPECT_EQ(lineOf(Report{.millisecond = 12, .bytes = {0x01, 0xa5}}), "report 12 01A5\n");
    EXPECT_EQ(lineOf(Silent{}), "silent\n");
    EXPECT_EQ(lineOf(Obeyed{"rest"}), "obeyed rest\n");
}

TEST(WindowMessageTest, MalformedLinesAreRefused) {
    for (const std::string& line :
         {std::string(), std::string("report"), std::string("report x 00"), std::string("report 1 0"),
          std::string("report 1 0g"), std::string("report 1 +1"), std::string("report 1 -1"),
          std::string("report -1 00"), std::string("report 1 00 "), "report 1 " + std::string(514, '0'),
          std::string("dropped"), std::string("dropped -1"), std::string("dropped 99999999999999999999"),
          std::string("reporting x"), std::string("silent now"), std::string("Silent"), std::string("\xff\0", 2)}) {
        EXPECT_FALSE(parse(line)) << line;
    }
}

} // namespace
} // namespace quiverly::window
