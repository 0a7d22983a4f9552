#include "tools/recording/RecordingParser.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <limits>
#include <span>
#include <utility>

#include "tools/recording/blank.h"
#include "tools/recording/numbers.h"

namespace quiverly {

namespace {

template<class Value>
using Expected = tl::expected<Value, std::string>;

constexpr std::uint32_t second = 1'000'000'000; // nanoseconds
constexpr std::uint64_t latestTime = 4'000'000'000 * std::uint64_t{second};
constexpr std::uint64_t latestCalendar = 9'000'000'000 * std::uint64_t{second}; // after 1970

bool isAllowed(char character) {
    return character == '\t' || (' ' <= character && character <= '~');
}

std::string_view withoutBlanks(std::string_view line) {
    return {std::ranges::find_if_not(line, isBlank), line.end()};
}

// Whether no character of a word follows.
bool endsWord(std::string_view rest) {
    return rest.empty() || isBlank(rest.front());
}

// Takes the next word off the line; an empty one when there is none.
std::string_view takeWord(std::string_view& line) {
    line = withoutBlanks(line);
    const auto end = std::ranges::find_if(line, isBlank);
    const std::string_view word(line.begin(), end);
    line = std::string_view(end, line.end());
    return word;
}

// A number of seconds, -?[0-9]+(\.[0-9]{1,9})?
struct Seconds {
    double nearest;
    bool negative;
    std::uint64_t nanoseconds; // the magnitude; the greatest number if it is more
};

Expected<Seconds> parseSeconds(std::string_view word) {
    const auto nearest = decimalNumber(word);
    if (!nearest) return tl::unexpected(nearest.error());
    const bool negative = word.starts_with('-');
    const auto magnitude = word.substr(negative ? 1 : 0);
    const auto point = std::min(magnitude.find('.'), magnitude.size());
    const auto digits = magnitude.substr(std::min(point + 1, magnitude.size()));
    if (digits.size() > 9) return tl::make_unexpected("a number with more than nine digits after the point");

    constexpr std::uint64_t greatest = std::numeric_limits<std::uint64_t>::max();
    const std::uint64_t whole = wholeNumber(magnitude.substr(0, point)).value_or(greatest);
    if (whole > (latestTime + latestCalendar) / second) return Seconds{*nearest, negative, greatest};
    std::uint64_t fraction = wholeNumber(digits).value_or(0);
    for (auto digit = digits.size(); digit < 9; ++digit) fraction *= 10;
    return Seconds{*nearest, negative, whole * second + fraction};
}

// A few digits taken off the front of a text.
struct Digits {
    std::uint64_t value = 0;
    std::size_t count = 0;
};

Digits takeDigits(std::string_view& text, std::size_t most) {
    const std::string_view front = text.substr(0, most);
    Digits digits;
    for (; digits.count < front.size() && isDigit(front[digits.count]); ++digits.count) {
        digits.value = 10 * digits.value + static_cast<std::uint64_t>(front[digits.count] - '0');
    }
    text.remove_prefix(digits.count);
    return digits;
}

// Takes the number of seconds off the front of the line. Nearly all are [0-9]{1,6}\.[0-9]{1,9} and cost little: a
// double holds these nanoseconds, for they are less than 2^53, so that one division makes the nearest seconds of them.
Expected<Seconds> takeSeconds(std::string_view& line) {
    std::string_view rest = line;
    const Digits whole = takeDigits(rest, 6);
    const bool hasPoint = rest.starts_with('.');
    if (hasPoint) rest.remove_prefix(1);
    Digits fraction = takeDigits(rest, 9);
    if (whole.count == 0 || !hasPoint || fraction.count == 0 || !endsWord(rest)) return parseSeconds(takeWord(line));
    for (; fraction.count < 9; ++fraction.count) fraction.value *= 10;
    const std::uint64_t nanoseconds = whole.value * second + fraction.value;
    line = rest;
    return Seconds{static_cast<double>(nanoseconds) / double{second}, false, nanoseconds};
}

// What the calendar reads after the jump. More than 64 bits can hold is just too late.
Expected<std::uint64_t> jump(std::uint64_t calendar, std::string_view word) {
    const auto seconds = parseSeconds(word);
    if (!seconds) return tl::unexpected("the jump is " + seconds.error());
    if (!seconds->negative) {
        return std::min(calendar, latestCalendar + 1) + std::min(seconds->nanoseconds, latestCalendar + 1);
    }
    if (seconds->nanoseconds > calendar) return tl::make_unexpected("the calendar would read less than 0 s");
    return calendar - seconds->nanoseconds;
}

// The value of each hexadecimal digit, -1 for all other characters.
constexpr auto hexadecimal = [] {
    std::array<std::int8_t, 256> values{};
    values.fill(-1);
    for (std::int8_t value = 0; value < 16; ++value) {
        values[static_cast<unsigned char>("0123456789abcdef"[value])] = value;
        values[static_cast<unsigned char>("0123456789ABCDEF"[value])] = value;
    }
    return values;
}();

int valueOf(char digit) {
    return hexadecimal[static_cast<unsigned char>(digit)];
}

// Decodes the digits at the front, two for a byte, until there are no two more or no room. How many bytes that makes.
std::size_t decode(std::string_view digits, std::span<std::uint8_t> bytes) {
    const std::size_t most = std::min(digits.size() / 2, bytes.size());
    for (std::size_t index = 0; index < most; ++index) {
        const int byte = valueOf(digits[2 * index]) << 4 | valueOf(digits[2 * index + 1]);
        if (byte < 0) return index;
        bytes[index] = static_cast<std::uint8_t>(byte);
    }
    return most;
}

// Why the word is not a report.
const char* problemOfReport(std::string_view word) {
    const bool isHexadecimal = std::ranges::all_of(word, [](char digit) { return valueOf(digit) >= 0; });
    if (!isHexadecimal) return "neither a report in hexadecimal digits nor a command";
    if (word.size() > 2 * action::Report::longest) return "a report has 256 bytes at most";
    return "the report has an odd number of digits";
}

// A command whose argument, if it has one, is one of a few words of its own.
struct Command {
    std::string_view name, argument;
    Action action;
};

const Command commands[] = {
    {"!start", "", action::Start{}},
    {"!stop", "", action::Stop{}},
    {"!sound", "on", action::Sound{true}},
    {"!sound", "off", action::Sound{false}},
    {"!check", "begin", action::BeginCheck{}},
    {"!check", "end", action::EndCheck{}},
    {"!sensor", "ok", action::Sensor{SensorAnswer::ok}},
    {"!sensor", "no-query", action::Sensor{SensorAnswer::noQuery}},
    {"!sensor", "no-lookup", action::Sensor{SensorAnswer::noLookup}},
    {"!sensor", "missing", action::Sensor{SensorAnswer::missing}},
    {"!sensor", "no-device", action::Sensor{SensorAnswer::noDevice}},
    {"!sensor", "denied", action::Sensor{SensorAnswer::denied}},
};

Expected<Action> parseCommand(std::string_view name, std::string_view argument) {
    if (name == "!threshold") {
        const auto threshold = decimalNumber(argument);
        if (!threshold) return tl::unexpected("the threshold is " + threshold.error());
        return action::Threshold{*threshold};
    }
    if (name == "!pack") {
        const auto pack = SoundPack::fromRawValue(argument);
        if (!pack) return tl::make_unexpected("there is no such pack");
        return action::Pack{*pack};
    }
    std::string arguments;
    for (const Command& command : commands) {
        if (name != command.name) continue;
        if (argument == command.argument) return command.action;
        if (command.argument.empty()) return tl::make_unexpected("nothing may follow this command");
        arguments.append(arguments.empty() ? "" : ", ").append(command.argument);
    }
    if (arguments.empty()) return tl::make_unexpected("there is no such command");
    return tl::unexpected("the command needs one of: " + arguments);
}

std::string withForbiddenByte(const std::string& problem, std::string_view line) {
    const auto forbidden = std::ranges::find_if_not(line, isAllowed);
    if (forbidden == line.end()) return problem;
    char text[8];
    std::snprintf(text, sizeof text, "0x%02X", static_cast<unsigned>(static_cast<unsigned char>(*forbidden)));
    return problem + ", and the byte " + text + " may only stand in comments";
}

} // namespace

tl::expected<const RecordingLine*, std::string> RecordingParser::parse(std::string_view line) {
    line = withoutBlanks(line);
    if (line.empty() || line.front() == '#') return nullptr;
    const auto taken = takeAll(line);
    if (!taken) return tl::unexpected(withForbiddenByte(taken.error(), line));
    return &understood;
}

RecordingParser::Problem RecordingParser::takeAll(std::string_view line) {
    if (auto taken = takeTime(line); !taken) return taken;
    if (auto taken = takeAction(line); !taken) return taken;
    if (!withoutBlanks(line).empty()) return tl::make_unexpected("the line should end here");
    if (calendar > latestCalendar) return tl::make_unexpected("the calendar would read more than 9000000000 s");
    understood.calendar = calendar::TimePoint(std::chrono::nanoseconds(static_cast<std::int64_t>(calendar)));
    return {};
}

RecordingParser::Problem RecordingParser::takeTime(std::string_view& line) {
    const auto seconds = takeSeconds(line);
    if (!seconds) return tl::unexpected("the time is " + seconds.error());
    if (seconds->negative) return tl::make_unexpected("the time is negative");
    if (seconds->nanoseconds > latestTime) return tl::make_unexpected("the time is more than 4000000000 s");
    if (seconds->nanoseconds < time) return tl::make_unexpected("the time is less than that of a line before");
    calendar += seconds->nanoseconds - time;
    time = seconds->nanoseconds;
    understood.seconds = seconds->nearest;
    return {};
}

RecordingParser::Problem RecordingParser::takeAction(std::string_view& line) {
    line = withoutBlanks(line);
    if (line.empty()) return tl::make_unexpected("a report or a command is missing");
    if (line.front() != '!') return takeReport(line);
    const auto name = takeWord(line);
    const auto argument = takeWord(line);
    if (name == "!clock") {
        const auto moved = jump(calendar, argument);
        if (!moved) return tl::unexpected(moved.error());
        calendar = *moved;
        understood.action = action::ClockJump{};
        return {};
    }
    const auto command = parseCommand(name, argument);
    if (!command) return tl::unexpected(command.error());
    understood.action = *command;
    return {};
}

RecordingParser::Problem RecordingParser::takeReport(std::string_view& line) {
    const std::size_t count = decode(line, bytes);
    const auto rest = line.substr(line.starts_with('-') ? 1 : 2 * count);
    if (!endsWord(rest)) return tl::unexpected<std::string>(problemOfReport(takeWord(line)));
    line = rest;
    understood.action = action::Report{std::span(bytes).first(count)};
    return {};
}

} // namespace quiverly
