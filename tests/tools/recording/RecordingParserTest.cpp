#include "tools/recording/RecordingParser.h"

#include <gtest/gtest.h>

#include <chrono>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "tools/recording/LineReader.h"

namespace quiverly {
namespace {

using namespace std::chrono_literals;

struct Parsed {
    std::vector<RecordingLine> lines;
    std::optional<std::string> problem;
    std::int64_t lineNumber = 0;
};

Parsed parse(const std::string& recording) {
    std::istringstream stream(recording);
    LineReader reader([&](std::span<char> chunk) {
        stream.read(chunk.data(), std::ssize(chunk));
        return static_cast<std::size_t>(stream.gcount());
    });
    RecordingParser parser;
    Parsed parsed;
    for (auto text = reader.next(); text && *text; text = reader.next()) {
        ++parsed.lineNumber;
        const auto line = parser.parse(**text);
        if (!line) {
            parsed.problem = line.error();
            break;
        }
        if (*line != nullptr) parsed.lines.push_back(**line);
    }
    return parsed;
}

// The lines of a recording that is all right.
std::vector<RecordingLine> lines(const std::string& recording) {
    const Parsed parsed = parse(recording);
    EXPECT_EQ(parsed.problem, std::nullopt) << recording;
    return parsed.lines;
}

RecordingLine onlyLine(const std::string& recording) {
    auto parsed = lines(recording);
    EXPECT_EQ(parsed.size(), 1U) << recording;
    return parsed.size() == 1 ? parsed[0] : RecordingLine{};
}

template<class Expected>
Expected onlyAction(const std::string& line) {
    const Action action = onlyLine(line).action;
    EXPECT_TRUE(std::holds_alternative<Expected>(action)) << line;
    return std::holds_alternative<Expected>(action) ? std::get<Expected>(action) : Expected{};
}

std::vector<std::uint8_t> reportIn(const std::string& line) {
    RecordingParser parser;
    const auto bytes = std::get<action::Report>(parser.parse(line).value()->action).bytes;
    return {bytes.begin(), bytes.end()};
}

void expectMalformed(const std::string& line) {
    const Parsed parsed = parse("# above\n0 !stop\n" + line);
    EXPECT_EQ(parsed.lines.size(), 1U) << line;
    EXPECT_TRUE(parsed.problem) << line;
    EXPECT_EQ(parsed.lineNumber, 3) << line;
    EXPECT_TRUE(parse(line).lines.empty()) << line;
}

calendar::TimePoint after1970(std::chrono::nanoseconds time) {
    return calendar::TimePoint(time);
}

TEST(RecordingParserTest, SkippedLinesSayNothing) {
    for (const char* nothing : {"", "\n", "\r\n", " ", "\t \n\n \r\n", "#", "# a\n#b\r\n\t#\r"}) {
        EXPECT_TRUE(lines(nothing).empty()) << nothing;
    }
}

TEST(RecordingParserTest, CommentsMayHoldAnythingAndBeOfAnyLength) {
    const std::string content("\0\r\x1B\x7F\xFF\xEF\xBB\xBF !stop", 14);
    EXPECT_TRUE(lines(" \t#" + content + "\n#" + content).empty());
    EXPECT_EQ(lines("#" + std::string(1'000'000, '-') + "\n0 !stop").size(), 1U);
    EXPECT_EQ(lines(std::string(1'000'000, ' ') + "\n0 !stop").size(), 1U);
}

TEST(RecordingParserTest, ALineEndsInLineFeedOrCarriageReturnAndLineFeedOrWithTheRecording) {
    const auto parsed = lines("0 !start\n1 !stop\r\n2 !start\t\r\n3 !stop");
    ASSERT_EQ(parsed.size(), 4U);
    EXPECT_EQ(parsed[3].seconds, 3.0);
}

TEST(RecordingParserTest, ALoneCarriageReturnIsMalformed) {
    for (const char* line : {"\r", "0 !stop\r", "\r0 !stop\n", "0\r!stop\n", "0 !stop\r\r\n", "0 !st\rop\n",
                             "0 !stop\r 1 !start\n", " \r\r\n"}) {
        expectMalformed(line);
    }
}

TEST(RecordingParserTest, BlanksAroundALineAndBetweenItsWordsDoNotMatter) {
    EXPECT_EQ(onlyLine(" \t 1\t \t!sound \t on \t ").seconds, 1.0);
    const std::string many(100'000, '\t');
    EXPECT_EQ(onlyLine(many + "1" + many + "!sound" + many + "on" + many + "\r\n").seconds, 1.0);
}

TEST(RecordingParserTest, OtherWhiteSpaceDoesNotSeparateWords) {
    for (const char* line : {"0\v!stop", "\f0 !stop", "0 !stop\v", "0\xC2\xA0!stop", "\xC2\xA0"}) expectMalformed(line);
}

TEST(RecordingParserTest, ControlBytesAreMalformed) {
    for (int byte = 0; byte < 0x20; ++byte) {
        if (byte == '\t' || byte == '\n') continue;
        const std::string control(1, static_cast<char>(byte));
        for (const std::string& line : {control + "0 !stop\n", "0" + control + " !stop\n", "0 " + control + "\n",
                                        "0 !st" + control + "op\n", "0 !stop " + control + " \n"}) {
            expectMalformed(line);
        }
    }
    expectMalformed("0 !stop\x7F\n");
}

TEST(RecordingParserTest, BytesBeyondAsciiAreMalformed) {
    for (const char* line : {"0 !stop \xC3\xA9", "0 \xFF", "\x80 !stop", "0 !pack p\xC3\xA1in", "0 \xD9\xA1\xD9\xA2"}) {
        expectMalformed(line);
    }
}

TEST(RecordingParserTest, AByteOrderMarkIsMalformedEvenBeforeAComment) {
    for (const char* line : {"\xEF\xBB\xBF", "\xEF\xBB\xBF\n", "\xEF\xBB\xBF# comment\n", "\xEF\xBB\xBF 0 !stop\n"}) {
        expectMalformed(line);
    }
}

TEST(RecordingParserTest, TheTimeIsADecimalNumberOfSeconds) {
    EXPECT_EQ(onlyLine("0 !stop").seconds, 0.0);
    EXPECT_EQ(onlyLine("007.5 !stop").seconds, 7.5);
    EXPECT_EQ(onlyLine("0.000000001 !stop").seconds, 1e-9);
    EXPECT_EQ(onlyLine(std::string(10'000, '0') + "1.100 !stop").seconds, 1.1);
    for (const char* line :
         {"!stop", "x !stop", "-1 !stop", "-0 !stop", "+1 !stop", ".5 !stop", "1. !stop", "1e3 !stop", "1,5 !stop",
          "0x1 !stop", "1.0.0 !stop", "1!stop", "1.!stop", "1.5!stop", "1.5. !stop", ".", "nan !stop"}) {
        expectMalformed(line);
    }
}

TEST(RecordingParserTest, TheTimeHasNoMoreThanNineDigitsAfterThePoint) {
    EXPECT_EQ(onlyLine("1.000000000 !stop").seconds, 1.0);
    expectMalformed("1.0000000000 !stop");
}

TEST(RecordingParserTest, TheTimeIsNoMoreThanFourBillionSeconds) {
    EXPECT_EQ(onlyLine("4000000000 !stop").seconds, 4e9);
    EXPECT_EQ(onlyLine("04000000000.000000000 !stop").seconds, 4e9);
    expectMalformed("4000000000.000000001 !stop");
    expectMalformed("18446744074 !stop"); // 290 ms in 64 bits of nanoseconds
    expectMalformed("18446744073709551616 !stop");
    expectMalformed(std::string(100'000, '9') + " !stop");
}

TEST(RecordingParserTest, TheTimeIsTheNearestDouble) {
    EXPECT_EQ(onlyLine("0.1 !stop").seconds, 0.1);
    EXPECT_EQ(onlyLine("0.000000003 !stop").seconds, 0.000000003);
    EXPECT_EQ(onlyLine("3599.998765 !stop").seconds, 3599.998765);
    EXPECT_EQ(onlyLine("999999.999999999 !stop").seconds, 999999.999999999);
    EXPECT_EQ(onlyLine("1000000.000000001 !stop").seconds, 1000000.000000001);
    EXPECT_EQ(onlyLine("9007199.254740995 !stop").seconds, 9007199.254740995);
    EXPECT_EQ(onlyLine("3999999999.999999999 !stop").seconds, 4e9);
    EXPECT_EQ(onlyLine("123456789.987654321 !stop").seconds, 123456789.987654321);
}

TEST(RecordingParserTest, TheTimeNeverDecreases) {
    EXPECT_EQ(lines("1 !stop\n1 !stop\n1.0 !stop\n1.000000001 !stop").size(), 4U);
    const Parsed parsed = parse("1.000000001 !stop\n1 !stop");
    EXPECT_EQ(parsed.lines.size(), 1U);
    EXPECT_TRUE(parsed.problem);
}

TEST(RecordingParserTest, AReportIsAnEvenNumberOfHexadecimalDigits) {
    using Bytes = std::vector<std::uint8_t>;
    EXPECT_EQ(reportIn("0 00ff7Aa0"), (Bytes{0x00, 0xFF, 0x7A, 0xA0}));
    EXPECT_EQ(reportIn("0 0123456789abcdefABCDEF \t"),
              (Bytes{0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF, 0xAB, 0xCD, 0xEF}));
    EXPECT_EQ(reportIn("0 -"), Bytes{});
    EXPECT_EQ(reportIn("0 -\t"), Bytes{});
    for (const char* line : {"0", "0 ", "0 0", "0 000", "0 0g", "0 g0", "0 -0", "0 --", "0 0x00", "0 00 00", "0 - -",
                             "0 00-", "0 00:", "0 00@G", "0 -00", "0 00 !stop"}) {
        expectMalformed(line);
    }
}

TEST(RecordingParserTest, AReportHas256BytesAtMost) {
    EXPECT_EQ(reportIn("0 " + std::string(512, 'a')), std::vector<std::uint8_t>(256, 0xAA));
    expectMalformed("0 " + std::string(513, 'a'));
    expectMalformed("0 " + std::string(514, 'a'));
    expectMalformed("0 " + std::string(1'000'000, '0'));
}

TEST(RecordingParserTest, CommandsAreUnderstood) {
    onlyAction<action::Start>("0 !start");
    onlyAction<action::Stop>("0 !stop");
    EXPECT_TRUE(onlyAction<action::Sound>("0 !sound on").on);
    EXPECT_FALSE(onlyAction<action::Sound>("0 !sound off").on);
    onlyAction<action::BeginCheck>("0 !check begin");
    onlyAction<action::EndCheck>("0 !check end");
    onlyAction<action::ClockJump>("0 !clock 1");
    EXPECT_EQ(onlyAction<action::Threshold>("0 !threshold -0.5").value, -0.5);
    for (const SoundPack pack : SoundPack::allCases) {
        const Action action = onlyLine(std::string("0 !pack ") + pack.rawValue()).action;
        ASSERT_TRUE(std::holds_alternative<action::Pack>(action));
        EXPECT_EQ(std::get<action::Pack>(action).pack, pack);
    }
    EXPECT_EQ(onlyAction<action::Sensor>("0 !sensor ok").answer, SensorAnswer::ok);
    EXPECT_EQ(onlyAction<action::Sensor>("0 !sensor no-query").answer, SensorAnswer::noQuery);
    EXPECT_EQ(onlyAction<action::Sensor>("0 !sensor no-lookup").answer, SensorAnswer::noLookup);
    EXPECT_EQ(onlyAction<action::Sensor>("0 !sensor missing").answer, SensorAnswer::missing);
    EXPECT_EQ(onlyAction<action::Sensor>("0 !sensor no-device").answer, SensorAnswer::noDevice);
    EXPECT_EQ(onlyAction<action::Sensor>("0 !sensor denied").answer, SensorAnswer::denied);
}

TEST(RecordingParserTest, UnknownCommandsAreMalformed) {
    for (const char* line :
         {"0 !",      "0 !Start",       "0 !START",      "0 !starts",    "0 ! start",         "0 start",
          "0 !sound", "0 !sound On",    "0 !sound true", "0 !pack",      "0 !pack Pain",      "0 !pack metal",
          "0 !check", "0 !check start", "0 !sensor",     "0 !sensor OK", "0 !sensor noquery", "0 !threshold",
          "0 !clock", "0 !sound=on",    "0 !st art",     "0 !!start"}) {
        expectMalformed(line);
    }
    expectMalformed("0 !" + std::string(1'000'000, 's'));
}

TEST(RecordingParserTest, TellsWhatIsWrong) {
    const std::pair<std::string, const char*> malformed[] = {
        {"start", "the time is not a number such as 12 or -0.25"},
        {"-1 !start", "the time is negative"},
        {"1.0000000000 !start", "the time is a number with more than nine digits after the point"},
        {"4000000001 !start", "the time is more than 4000000000 s"},
        {"1", "a report or a command is missing"},
        {"1 start", "neither a report in hexadecimal digits nor a command"},
        {"1 stop", "neither a report in hexadecimal digits nor a command"},
        {"1 abc", "the report has an odd number of digits"},
        {"1 " + std::string(514, 'a'), "a report has 256 bytes at most"},
        {"1 !Start", "there is no such command"},
        {"1 !start now", "nothing may follow this command"},
        {"1 !check begin now", "the line should end here"},
        {"1 !sound loud", "the command needs one of: on, off"},
        {"1 !pack Pain", "there is no such pack"},
        {"1 !threshold high", "the threshold is not a number such as 12 or -0.25"},
        {"1 !threshold 1" + std::string(400, '0'), "the threshold is larger than any number"},
        {"1 !clock now", "the jump is not a number such as 12 or -0.25"},
        {"1 !clock -1700000002", "the calendar would read less than 0 s"},
        {"1 !clock 7300000000", "the calendar would read more than 9000000000 s"},
        {"1 !stop\r", "there is no such command, and the byte 0x0D may only stand in comments"},
        {"\xEF\xBB\xBF# comment",
         "the time is not a number such as 12 or -0.25, and the byte 0xEF may only stand in comments"},
    };
    for (const auto& [line, problem] : malformed) EXPECT_EQ(parse(line).problem, problem) << line;
    EXPECT_EQ(parse("1.000000001 !start\n1 !stop").problem, "the time is less than that of a line before");
}

TEST(RecordingParserTest, SurplusWordsAreMalformed) {
    for (const char* line : {"0 !start now", "0 !stop 1", "0 !sound on off", "0 !pack pain sexy", "0 !check begin #",
                             "0 !threshold 1 2", "0 !clock 1 s", "0 !sensor ok # comment", "0 00 # comment"}) {
        expectMalformed(line);
    }
}

TEST(RecordingParserTest, AThresholdIsAFiniteDecimalNumber) {
    EXPECT_EQ(onlyAction<action::Threshold>("0 !threshold 000.12").value, 0.12);
    EXPECT_EQ(onlyAction<action::Threshold>("0 !threshold 0." + std::string(10'000, '0') + "1").value, 0.0);
    for (const char* number : {"1e3", ".5", "5.", "+1", "nan", "inf", "0x1", "--1", "1-", "on"}) {
        expectMalformed(std::string("0 !threshold ") + number);
    }
    expectMalformed("0 !threshold 1" + std::string(309, '0'));
}

TEST(RecordingParserTest, TheCalendarGoesWithTheTime) {
    EXPECT_EQ(onlyLine("0 !stop").calendar, after1970(1'700'000'000s));
    EXPECT_EQ(onlyLine("12.000000345 !stop").calendar, after1970(1'700'000'012s + 345ns));
    EXPECT_EQ(onlyLine("4000000000 !stop").calendar, after1970(5'700'000'000s));
}

TEST(RecordingParserTest, JumpsMoveTheCalendarForGood) {
    const auto parsed = lines("1 !clock 0.000000001\n2 !clock -10.5\n3 00\n4 !clock -0\n4 !clock 00010.500000000\n5 -");
    ASSERT_EQ(parsed.size(), 6U);
    EXPECT_EQ(parsed[0].calendar, after1970(1'700'000'001s + 1ns));
    EXPECT_EQ(parsed[1].calendar, after1970(1'700'000'002s + 1ns - 10'500ms));
    EXPECT_EQ(parsed[2].calendar, after1970(1'700'000'003s + 1ns - 10'500ms));
    EXPECT_EQ(parsed[3].calendar, after1970(1'700'000'004s + 1ns - 10'500ms));
    EXPECT_EQ(parsed[4].calendar, after1970(1'700'000'004s + 1ns));
    EXPECT_EQ(parsed[5].calendar, after1970(1'700'000'005s + 1ns));
}

TEST(RecordingParserTest, AJumpIsADecimalNumberWithAtMostNineDigitsAfterThePoint) {
    for (const char* number : {"1.0000000000", "1e3", ".5", "5.", "+1", "--1", "", "now"}) {
        expectMalformed(std::string("0 !clock ") + number);
    }
}

TEST(RecordingParserTest, TheCalendarStaysBetween1970AndNineBillionSecondsLater) {
    EXPECT_EQ(onlyLine("0 !clock -1700000000").calendar, after1970(0s));
    EXPECT_EQ(onlyLine("1.5 !clock -1700000001.5").calendar, after1970(0s));
    EXPECT_EQ(onlyLine("0 !clock 7300000000").calendar, after1970(9'000'000'000s));
    expectMalformed("0 !clock -1700000000.000000001");
    expectMalformed("0 !clock 7300000000.000000001");
    expectMalformed("0.000000001 !clock 7300000000");
    expectMalformed("0 !clock 16746744073.709551616"); // with 1.7e18 ns exactly 2^64
    for (const char* sign : {"", "-"}) {
        expectMalformed("0 !clock " + (sign + std::string("18446744073.709551615")));
        expectMalformed("0 !clock " + (sign + std::string("18446744073.709551616")));
        expectMalformed("0 !clock " + (sign + std::string(100'000, '9')));
    }
}

TEST(RecordingParserTest, EveryLineThatTakesTheCalendarOutOfItsRangeIsMalformed) {
    for (const char* what : {"00", "-", "!stop", "!sensor ok", "!clock 0", "!clock 4000000000"}) {
        const Parsed parsed = parse(std::string("1 !clock 7299999999\n1 00\n1.000000001 ") + what);
        EXPECT_EQ(parsed.lines.size(), 2U) << what;
        EXPECT_TRUE(parsed.problem) << what;
        EXPECT_EQ(parsed.lineNumber, 3) << what;
    }
}

TEST(RecordingParserTest, AJumpBackMayTakeUpWhatTheTimeWouldHaveTakenTooFar) {
    const auto parsed = lines("0 !clock 7300000000\n4000000000 !clock -13000000000\n4000000000 !clock 9000000000");
    ASSERT_EQ(parsed.size(), 3U);
    EXPECT_EQ(parsed[1].calendar, after1970(0s));
    EXPECT_EQ(parsed[2].calendar, after1970(9'000'000'000s));
}

TEST(RecordingParserTest, EveryLineIsCounted) {
    const Parsed parsed = parse("# one\r\n\n \t\n0 !stop\n\r\n#\n0 !stopp\n0 !stop\n");
    EXPECT_EQ(parsed.lines.size(), 1U);
    EXPECT_EQ(parsed.lineNumber, 7);
    EXPECT_TRUE(parsed.problem);
}

} // namespace
} // namespace quiverly
