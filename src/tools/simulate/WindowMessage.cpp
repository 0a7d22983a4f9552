#include "tools/simulate/WindowMessage.h"

#include <charconv>
#include <optional>
#include <span>
#include <utility>

#include "laptop/protocol.h"

namespace quiverly::window {

namespace {

using Result = tl::expected<Message, std::string>;

std::string hexadecimal(std::span<const std::uint8_t> bytes) {
    constexpr char digits[] = "0123456789ABCDEF";
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

// All of the text as a number that is not negative.
template<class Number>
std::optional<Number> number(std::string_view text, int base = 10) {
    Number value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    const bool isWhole = error == std::errc() && end == text.data() + text.size() && text[0] != '-';
    return isWhole ? std::optional(value) : std::nullopt;
}

std::optional<std::vector<std::uint8_t>> bytes(std::string_view text) {
    if (text.size() % 2 != 0 || text.size() / 2 > laptop::maximumReport) return std::nullopt;
    std::vector<std::uint8_t> content;
    for (std::size_t index = 0; index < text.size(); index += 2) {
        const auto byte = number<std::uint8_t>(text.substr(index, 2), 16);
        if (!byte) return std::nullopt;
        content.push_back(*byte);
    }
    return content;
}

// What stands before the first blank, and what follows it.
std::pair<std::string_view, std::string_view> split(std::string_view text) {
    const auto blank = text.find(' ');
    if (blank == std::string_view::npos) return {text, {}};
    return {text.substr(0, blank), text.substr(blank + 1)};
}

Result malformed(std::string_view line) {
    return tl::unexpected("malformed line \"" + std::string(line) + '"');
}

std::string contentOf(const Report& report) {
    return "report " + std::to_string(report.millisecond) + ' ' + hexadecimal(report.bytes);
}

std::string contentOf(const Dropped& dropped) {
    return "dropped " + std::to_string(dropped.reports);
}

std::string contentOf(const Reporting& reporting) {
    return "reporting " + std::to_string(reporting.process);
}

std::string contentOf(const Silent&) {
    return "silent";
}

std::string contentOf(const Obeyed& obeyed) {
    return "obeyed " + obeyed.command;
}

std::string contentOf(const Problem& problem) {
    return "problem " + problem.text;
}

} // namespace

std::string lineOf(const Message& message) {
    return std::visit([](const auto& what) { return contentOf(what); }, message) + '\n';
}

Result parse(std::string_view line) {
    const auto [kind, content] = split(line);
    if (kind == "report") {
        const auto [time, digits] = split(content);
        const auto millisecond = number<std::int64_t>(time);
        auto report = bytes(digits);
        if (millisecond && report) return Report{.millisecond = *millisecond, .bytes = *std::move(report)};
    } else if (kind == "dropped") {
        if (const auto reports = number<std::uint64_t>(content)) return Dropped{*reports};
    } else if (kind == "reporting") {
        if (const auto process = number<std::int64_t>(content)) return Reporting{*process};
    } else if (line == "silent") {
        return Silent{};
    } else if (kind == "obeyed") {
        return Obeyed{std::string(content)};
    } else if (kind == "problem") {
        return Problem{std::string(content)};
    }
    return malformed(line);
}

} // namespace quiverly::window
