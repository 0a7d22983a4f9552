#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <variant>

namespace quiverly {

// What the user asked quiverly-replay for.
struct Options {
    enum class Wish { replay, help, version };

    Wish wish = Wish::replay;
    bool samples = false;
    std::optional<std::string> pack;
    std::optional<double> threshold; // g
    std::optional<std::string> resources;
    std::uint64_t seed = 0;
    std::string recording; // a file, or - for standard input
};

struct UnusableOptions {
    std::string reason;
};

// Understands the arguments that follow the program's name. Options and the recording come in any order; after "--"
// nothing is an option. A request for help or the version ends the reading.
std::variant<Options, UnusableOptions> parseOptions(std::span<const char* const> arguments);

} // namespace quiverly
