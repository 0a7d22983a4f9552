#include "tools/options/CommandLine.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <string_view>
#include <system_error>
#include <vector>

#include "identity.h"

namespace quiverly {

namespace {

// CLI11 would take the next argument for the value of "--name=". As two arguments the value is empty, as it should be.
std::vector<std::string> withEmptyValuesApart(std::span<const char* const> arguments) {
    std::vector<std::string> result;
    bool optionsEnded = false;
    for (const std::string_view argument : arguments) {
        optionsEnded = optionsEnded || argument == "--";
        if (!optionsEnded && argument.starts_with("--") && argument.find('=') == argument.size() - 1) {
            result.emplace_back(argument.substr(0, argument.size() - 1));
            result.emplace_back();
        } else {
            result.emplace_back(argument);
        }
    }
    return result;
}

} // namespace

ExitStatus EarlyExit::print() const {
    std::FILE* const stream = status == success ? stdout : stderr;
    if (std::fputs(text.c_str(), stream) >= 0 && std::fflush(stream) == 0) return status;
    const auto reason = std::generic_category().message(errno);
    std::fprintf(stderr, "%s: standard output: %s\n", program.c_str(), reason.c_str());
    return failed;
}

struct CommandLine::Parser {
    std::unique_ptr<CLI::App> own; // none for a command, which the program's parser owns
    CLI::App& app;
    std::vector<std::unique_ptr<CommandLine>> commands;
};

CommandLine::CommandLine(const std::string& program, const std::string& description, const std::string& ending) {
    auto app = std::make_unique<CLI::App>(description, program);
    app->option_defaults()->take_last()->disable_flag_override();
    app->set_help_flag("--help", "print this text and exit");
    app->set_version_flag("--version", program + ' ' + identity::version, "print the version and exit");
    app->footer(ending);
    app->get_formatter()->column_width(24);
    app->get_formatter()->label("REQUIRED", "");
    CLI::App& reference = *app;
    parser.reset(new Parser{.own = std::move(app), .app = reference, .commands = {}});
}

CommandLine::CommandLine(std::unique_ptr<Parser> parser) : parser(std::move(parser)) {}

CommandLine::~CommandLine() = default;

void CommandLine::add(const std::string& name, const Take& take, const std::string& description,
                      const std::string& kind) {
    const auto takeOrThrow = [name, take](const std::string& text) {
        const auto taken = take(text);
        if (!taken) throw CLI::ValidationError(name, taken.error());
    };
    const bool mayBeLeftOut = name.starts_with('[');
    const std::string bare = mayBeLeftOut ? name.substr(1, name.size() - 2) : name;
    CLI::Option* const option = parser->app.add_option_function<std::string>(bare, takeOrThrow, description);
    if (name.starts_with('-')) {
        option->type_name(kind);
    } else {
        option->type_name("")->required(!mayBeLeftOut);
    }
}

void CommandLine::addValues(const std::string& name, std::vector<std::string>& target, const std::string& description) {
    parser->app.add_option(name, target, description)
        ->type_name("")
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

void CommandLine::addFlag(const std::string& name, bool& target, const std::string& description) {
    parser->app.add_flag(name, target, description);
}

CommandLine& CommandLine::addCommand(const std::string& name, const std::string& description) {
    parser->app.require_subcommand(1);
    CLI::App& command = *parser->app.add_subcommand(name, description);
    std::unique_ptr<Parser> its(new Parser{.own = nullptr, .app = command, .commands = {}});
    parser->commands.emplace_back(new CommandLine(std::move(its)));
    return *parser->commands.back();
}

bool CommandLine::isGiven() const {
    return parser->app.parsed();
}

tl::expected<void, EarlyExit> CommandLine::read(std::span<const char* const> arguments) {
    CLI::App& app = parser->app;
    const std::string program = app.get_name();
    const auto exit = [&program](ExitStatus status, const std::string& text) {
        return tl::unexpected(EarlyExit{.program = program, .status = status, .text = text});
    };
    auto texts = withEmptyValuesApart(arguments);
    std::ranges::reverse(texts); // as CLI11 wants them
    try {
        app.parse(texts);
        return {};
    } catch (const CLI::CallForHelp&) {
        return exit(success, app.help());
    } catch (const CLI::CallForVersion& version) {
        return exit(success, std::string(version.what()) + '\n');
    } catch (const CLI::ParseError& error) {
        return exit(unusable, program + ": " + error.what() + "\nTry '" + program + " --help'.\n");
    }
}

tl::expected<std::string, std::string> anyText(const std::string& text) {
    return text;
}

} // namespace quiverly
