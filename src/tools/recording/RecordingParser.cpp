#include "tools/recording/RecordingParser.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <limits>
#include <string_view>
#include <utility>

namespace quiverly {

namespace {

struct Malformed {
    std::string what;
};

constexpr std::uint64_t latestTime = 4'000'000'000'000'000'000U;     // nanoseconds
constexpr std::uint64_t latestCalendar = 9'000'000'000'000'000'000U; // nanoseconds after 1970

constexpr std::size_t longestReport = 256; // bytes
constexpr std::size_t longestWord = 2 * longestReport;

bool isBlank(int byte) {
    return byte == ' ' || byte == '\t';
}

bool isHexadecimal(char digit) {
    return ('0' <= digit && digit <= '9') || ('a' <= digit && digit <= 'f') || ('A' <= digit && digit <= 'F');
}

unsigned valueOf(char hexadecimal) {
    return static_cast<unsigned>(hexadecimal <= '9' ? hexadecimal - '0' : (hexadecimal | 0x20) - 'a' + 10);
}

std::string inHexadecimal(int byte) {
    char text[8];
    std::snprintf(text, sizeof text, "0x%02X", static_cast<unsigned>(byte));
    return text;
}

} // namespace

std::optional<RecordingLine> RecordingParser::next() {
    try {
        while (!malformed && source.peek() != ByteSource::end) {
            ++number;
            skipBlanks();
            if (source.peek() == '#') {
                source.skipLine();
            } else if (!takeLineEnd()) {
                return readLine();
            }
        }
    } catch (Malformed& found) {
        malformed = std::move(found.what);
    }
    return std::nullopt;
}

RecordingLine RecordingParser::readLine() {
    const double seconds = readTime();
    skipBlanks();
    Action action = readAction();
    skipBlanks();
    if (!takeLineEnd()) fail("the line should end here");
    if (calendar > latestCalendar) fail("the calendar would read more than 9000000000 s");
    const std::chrono::nanoseconds since1970(static_cast<std::int64_t>(calendar));
    return {seconds, calendar::TimePoint(since1970), std::move(action)};
}

double RecordingParser::readTime() {
    const Decimal seconds = readDecimal();
    const auto nanoseconds = seconds.billionths();
    if (seconds.isNegative()) fail("the time is negative");
    if (!nanoseconds) fail("the time has more than nine digits after the point");
    if (*nanoseconds > latestTime) fail("the time is more than 4000000000 s");
    if (*nanoseconds < time) fail("the time is less than that of a line before");
    calendar += *nanoseconds - time;
    time = *nanoseconds;
    return seconds.value();
}

Action RecordingParser::readAction() {
    const std::string what = readWord();
    if (what.empty()) fail("a report or a command is missing");
    if (what.starts_with('!')) return readCommand(what);
    return readReport(what == "-" ? "" : what);
}

action::Report RecordingParser::readReport(const std::string& digits) {
    if (!std::ranges::all_of(digits, isHexadecimal)) fail("neither a report in hexadecimal digits nor a command");
    if (digits.size() % 2 != 0) fail("the report has an odd number of digits");
    action::Report report;
    report.bytes.reserve(digits.size() / 2);
    for (std::size_t index = 0; index < digits.size(); index += 2) {
        report.bytes.push_back(static_cast<std::uint8_t>(valueOf(digits[index]) << 4 | valueOf(digits[index + 1])));
    }
    return report;
}

Action RecordingParser::readCommand(const std::string& name) {
    skipBlanks();
    if (name == "!start") return action::Start{};
    if (name == "!stop") return action::Stop{};
    if (name == "!sound") return readChoice<Action>({{"on", action::Sound{true}}, {"off", action::Sound{false}}});
    if (name == "!pack") {
        const auto pack = SoundPack::fromRawValue(readWord());
        if (!pack) fail("there is no such pack");
        return action::Pack{*pack};
    }
    if (name == "!threshold") return action::Threshold{readThreshold()};
    if (name == "!check") return readChoice<Action>({{"begin", action::BeginCheck{}}, {"end", action::EndCheck{}}});
    if (name == "!clock") return readClockJump();
    if (name == "!sensor") {
        return action::Sensor{readChoice<SensorAnswer>({{"ok", SensorAnswer::ok},
                                                        {"no-query", SensorAnswer::noQuery},
                                                        {"no-lookup", SensorAnswer::noLookup},
                                                        {"missing", SensorAnswer::missing},
                                                        {"no-device", SensorAnswer::noDevice},
                                                        {"denied", SensorAnswer::denied}})};
    }
    fail("there is no such command");
}

template<class Value, std::size_t count>
Value RecordingParser::readChoice(const std::pair<const char*, Value> (&choices)[count]) {
    const std::string chosen = readWord();
    std::string expected;
    for (const auto& [name, value] : choices) {
        if (chosen == name) return value;
        expected.append(expected.empty() ? "" : ", ").append(name);
    }
    fail("the command needs one of: " + expected);
}

double RecordingParser::readThreshold() {
    const double value = readDecimal().value();
    if (!std::isfinite(value)) fail("the threshold is beyond all numbers");
    return value;
}

// Moves the calendar. One that ends up too late is noticed with the whole line.
action::ClockJump RecordingParser::readClockJump() {
    const Decimal seconds = readDecimal();
    const auto nanoseconds = seconds.billionths();
    if (!nanoseconds) fail("the jump has more than nine digits after the point");
    if (seconds.isNegative()) {
        if (*nanoseconds > calendar) fail("the calendar would read less than 0 s");
        calendar -= *nanoseconds;
    } else {
        constexpr std::uint64_t never = std::numeric_limits<std::uint64_t>::max();
        calendar = *nanoseconds < never - calendar ? calendar + *nanoseconds : never;
    }
    return {};
}

Decimal RecordingParser::readDecimal() {
    Decimal number;
    while (number.accept(source.peek())) source.take();
    if (!number.isComplete() || !atWordEnd()) fail("a number such as 12 or 12.345 should stand here");
    return number;
}

// The characters up to a blank or the end of the line; none when the line ends here.
std::string RecordingParser::readWord() {
    std::string word;
    while (!atWordEnd()) {
        const int byte = source.peek();
        if (byte < 0x20 || byte >= 0x7F) fail("there should be printable characters only");
        if (word.size() == longestWord) fail("a report has 256 bytes at most, and no other word is as long");
        word += static_cast<char>(byte);
        source.take();
    }
    return word;
}

void RecordingParser::skipBlanks() {
    while (isBlank(source.peek())) source.take();
}

bool RecordingParser::takeLineEnd() {
    if (!atLineEnd()) return false;
    source.skipLine();
    return true;
}

bool RecordingParser::atLineEnd() {
    const int byte = source.peek();
    return byte == '\n' || byte == ByteSource::end || (byte == '\r' && source.peekSecond() == '\n');
}

bool RecordingParser::atWordEnd() {
    return isBlank(source.peek()) || atLineEnd();
}

void RecordingParser::fail(const std::string& what) {
    const int byte = source.peek();
    const bool shown = byte == ByteSource::end || byte == '\n' || byte == '\t' || (0x20 <= byte && byte < 0x7F);
    throw Malformed{shown ? what : what + ", not the byte " + inHexadecimal(byte)};
}

} // namespace quiverly
