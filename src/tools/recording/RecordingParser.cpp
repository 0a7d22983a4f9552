#include "tools/recording/RecordingParser.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <limits>
#include <utility>

#include "tools/recording/blank.h"
#include "tools/recording/numbers.h"

namespace quiverly {

namespace {

template<class Value>
using Expected = tl::expected<Value, std::string>;

constexpr std::uint64_t second = 1'000'000'000; // nanoseconds
constexpr std::uint64_t latestTime = 4'000'000'000 * second;
constexpr std::uint64_t latestCalendar = 9'000'000'000 * second; // after 1970

constexpr std::size_t longestReport = 256; // bytes

bool isAllowed(char character) {
    return character == '\t' || (' ' <= character && character <= '~');
}

// Takes the next word off the line; an empty one when there is none.
std::string_view takeWord(std::string_view& line) {
    const auto begin = std::ranges::find_if_not(line, isBlank);
    const auto end = std::find_if(begin, line.end(), isBlank);
    const std::string_view word(begin, end);
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

Expected<Action> parseReport(std::string_view word) {
    const auto digits = word == "-" ? std::string_view() : word;
    if (std::ranges::any_of(digits, [](char digit) { return valueOf(digit) < 0; })) {
        return tl::make_unexpected("neither a report in hexadecimal digits nor a command");
    }
    if (digits.size() > 2 * longestReport) return tl::make_unexpected("a report has 256 bytes at most");
    if (digits.size() % 2 != 0) return tl::make_unexpected("the report has an odd number of digits");
    action::Report report{std::vector<std::uint8_t>(digits.size() / 2)};
    for (std::size_t index = 0; index < digits.size(); index += 2) {
        report.bytes[index / 2] = static_cast<std::uint8_t>(valueOf(digits[index]) << 4 | valueOf(digits[index + 1]));
    }
    return report;
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

tl::expected<std::optional<RecordingLine>, std::string> RecordingParser::parse(std::string_view line) {
    const auto first = std::ranges::find_if_not(line, isBlank);
    if (first == line.end() || *first == '#') return std::nullopt;
    auto understood = understand(line);
    if (!understood) return tl::unexpected(withForbiddenByte(understood.error(), line));
    return *std::move(understood);
}

tl::expected<RecordingLine, std::string> RecordingParser::understand(std::string_view line) {
    const auto seconds = parseSeconds(takeWord(line));
    if (!seconds) return tl::unexpected("the time is " + seconds.error());
    if (seconds->negative) return tl::make_unexpected("the time is negative");
    if (seconds->nanoseconds > latestTime) return tl::make_unexpected("the time is more than 4000000000 s");
    if (seconds->nanoseconds < time) return tl::make_unexpected("the time is less than that of a line before");
    calendar += seconds->nanoseconds - time;
    time = seconds->nanoseconds;

    auto action = parseAction(line);
    if (!action) return tl::unexpected(action.error());
    if (!takeWord(line).empty()) return tl::make_unexpected("the line should end here");
    if (calendar > latestCalendar) return tl::make_unexpected("the calendar would read more than 9000000000 s");
    const std::chrono::nanoseconds since1970(static_cast<std::int64_t>(calendar));
    return RecordingLine{seconds->nearest, calendar::TimePoint(since1970), *std::move(action)};
}

tl::expected<Action, std::string> RecordingParser::parseAction(std::string_view& line) {
    const auto what = takeWord(line);
    if (what.empty()) return tl::make_unexpected("a report or a command is missing");
    if (!what.starts_with('!')) return parseReport(what);
    const auto argument = takeWord(line);
    if (what != "!clock") return parseCommand(what, argument);
    return jump(calendar, argument).map([this](std::uint64_t moved) {
        calendar = moved;
        return Action(action::ClockJump{});
    });
}

} // namespace quiverly
