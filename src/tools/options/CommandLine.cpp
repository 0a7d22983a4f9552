#include "tools/options/CommandLine.h"

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

CommandLine::CommandLine(const std::string& program, const std::string& description, const std::string& ending)
    : CLI::App(description, program) {
    option_defaults()->take_last()->disable_flag_override();
    set_help_flag("--help", "print this text and exit");
    set_version_flag("--version", program + ' ' + identity::version, "print the version and exit");
    footer(ending);
    get_formatter()->column_width(24);
    get_formatter()->label("REQUIRED", "");
}

tl::expected<void, EarlyExit> CommandLine::read(std::span<const char* const> arguments) {
    const auto exit = [this](ExitStatus status, const std::string& text) {
        return tl::unexpected(EarlyExit{.program = get_name(), .status = status, .text = text});
    };
    auto texts = withEmptyValuesApart(arguments);
    std::ranges::reverse(texts); // as CLI11 wants them
    try {
        parse(texts);
        return {};
    } catch (const CLI::CallForHelp&) {
        return exit(success, help());
    } catch (const CLI::CallForVersion& version) {
        return exit(success, std::string(version.what()) + '\n');
    } catch (const CLI::ParseError& error) {
        return exit(unusable, get_name() + ": " + error.what() + "\nTry '" + get_name() + " --help'.\n");
    }
}

} // namespace quiverly
