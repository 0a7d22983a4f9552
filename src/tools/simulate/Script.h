#pragma once

#include <chrono>
#include <deque>
#include <filesystem>
#include <string>
#include <string_view>

#include <tl/expected.hpp>

#include "tools/simulate/Command.h"

namespace quiverly {

// A command behind the time at which it is due, in seconds: "2.5 slap 0.6".
struct TimedCommand {
    std::chrono::milliseconds due;
    command::Command command;
    std::string line;

    // The error says what is wrong with the line.
    static tl::expected<TimedCommand, std::string> parse(std::string_view line);
};

// Times never decrease.
using Script = std::deque<TimedCommand>;

// The timed commands of a file, one a line, remarks between them; the error says "FILE:LINE: what is wrong".
tl::expected<Script, std::string> readScript(const std::filesystem::path& file);

} // namespace quiverly
