#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include <tl/expected.hpp>

// What the simulated laptop tells its window, a line each.
namespace quiverly::window {

// An input report as it is sent to readers.
struct Report {
    std::int64_t millisecond; // of the laptop's clock
    std::vector<std::uint8_t> bytes;

    bool operator==(const Report&) const = default;
};

// So many reports before the next one did not fit between the laptop and its window.
struct Dropped {
    std::uint64_t reports;

    bool operator==(const Dropped&) const = default;
};

// Reports flow from now on; the process is the one that reads them.
struct Reporting {
    std::int64_t process;

    bool operator==(const Reporting&) const = default;
};

// No reports flow from now on.
struct Silent {
    bool operator==(const Silent&) const = default;
};

// A command was obeyed.
struct Obeyed {
    std::string command;

    bool operator==(const Obeyed&) const = default;
};

// A command had no effect, or something else failed; the text is for the user.
struct Problem {
    std::string text;

    bool operator==(const Problem&) const = default;
};

using Message = std::variant<Report, Dropped, Reporting, Silent, Obeyed, Problem>;

// The line, with its end.
std::string lineOf(const Message& message);

// Without the line's end. The error says what is wrong with the line.
tl::expected<Message, std::string> parse(std::string_view line);

} // namespace quiverly::window
