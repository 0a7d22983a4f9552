#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include <tl/expected.hpp>

#include "tools/options/CommandLine.h"

namespace quiverly {

// What quiverly-replay is to do.
struct Options {
    bool samples = false;
    std::optional<std::string> pack;
    std::optional<double> threshold; // g
    std::optional<std::string> resources;
    std::uint64_t seed = 0;
    std::optional<std::string> plot; // the file that shall hold the drawing
    std::string recording;           // a file, or - for standard input
};

// Understands the arguments that follow the program's name.
tl::expected<Options, EarlyExit> parseOptions(std::span<const char* const> arguments);

} // namespace quiverly
