#pragma once

#include <CLI/CLI.hpp>

#include <span>
#include <string>
#include <utility>

#include <tl/expected.hpp>

namespace quiverly {

enum ExitStatus { success = 0, failed = 1, unusable = 2 };

// Why a program ends before it has begun: its help or version was asked for, or its arguments cannot be used.
struct EarlyExit {
    std::string program;
    ExitStatus status;
    std::string text;

    // Prints the text, to standard error unless all is well. The exit status, `failed` if it could not be written.
    ExitStatus print() const;
};

// The arguments of a program, understood in the same way by all programs: options and other arguments in any order,
// values in the next argument or behind "=", of a repeated option the last counts, after "--" nothing is an option.
//
// Options and arguments are added as CLI::App describes or with addValue(); --help and --version are there.
class CommandLine : public CLI::App {
public:
    // `ending` closes the help text: what the exit status means, and whatever else there is to tell.
    CommandLine(const std::string& program, const std::string& description, const std::string& ending);

    // Adds an option (or an argument, where the name has no dashes) whose text `parse` turns into an expected value;
    // its error says what is wrong with the text. The target must outlive the parsing.
    template<class Target, class Parse>
    CLI::Option* addValue(const std::string& name, Target& target, Parse parse, const std::string& description);

    // Takes in the arguments that follow the program's name.
    tl::expected<void, EarlyExit> read(std::span<const char* const> arguments);
};

template<class Target, class Parse>
CLI::Option* CommandLine::addValue(const std::string& name, Target& target, Parse parse,
                                   const std::string& description) {
    const auto take = [name, &target, parse](const std::string& text) {
        auto value = parse(text);
        if (!value) throw CLI::ValidationError(name, value.error());
        target = *std::move(value);
    };
    CLI::Option* const option = add_option_function<std::string>(name, take, description);
    return name.starts_with('-') ? option : option->type_name("");
}

} // namespace quiverly
