#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

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
// --help and --version are there.
//
// What the arguments are written to must outlive the CommandLine.
class CommandLine {
public:
    // `ending` closes the help text: what the exit status means, and anything else.
    CommandLine(const std::string& program, const std::string& description, const std::string& ending);
    ~CommandLine();

    // Adds an option, or, where the name has no dashes, an argument, which must be given unless its name is in
    // brackets. `parse` turns its text into an expected value; the error says what is wrong with the text. The help
    // text calls the value of an option `kind`.
    template<class Target, class Parse>
    void addValue(const std::string& name, Target& target, Parse parse, const std::string& description,
                  const std::string& kind = "TEXT");

    // Adds what may be given any number of times, or not at all, behind the arguments before it.
    void addValues(const std::string& name, std::vector<std::string>& target, const std::string& description);

    // Adds an option without a value.
    void addFlag(const std::string& name, bool& target, const std::string& description);

    // Adds a word that says what to do, with arguments of its own; one of the words must be given.
    CommandLine& addCommand(const std::string& name, const std::string& description);
    bool isGiven() const;

    // Takes in the arguments that follow the program's name.
    tl::expected<void, EarlyExit> read(std::span<const char* const> arguments);

private:
    using Take = std::function<tl::expected<void, std::string>(const std::string&)>; // writes what the text says

    struct Parser;

    explicit CommandLine(std::unique_ptr<Parser> parser);
    void add(const std::string& name, const Take& take, const std::string& description, const std::string& kind);

    std::unique_ptr<Parser> parser;
};

template<class Target, class Parse>
void CommandLine::addValue(const std::string& name, Target& target, Parse parse, const std::string& description,
                           const std::string& kind) {
    const auto take = [&target, parse](const std::string& text) {
        return parse(text).map([&target](auto&& value) { target = std::forward<decltype(value)>(value); });
    };
    add(name, take, description, kind);
}

// For a value that may be any text.
tl::expected<std::string, std::string> anyText(const std::string& text);

} // namespace quiverly
