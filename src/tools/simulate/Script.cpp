#include "tools/simulate/Script.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <fstream>
#include <system_error>
#include <utility>

#include "tools/recording/numbers.h"

namespace quiverly {

namespace {

// Adds what the line says to the script. The error says what is wrong with it.
tl::expected<void, std::string> append(Script& script, std::string_view line) {
    if (command::isRemark(line)) return {};
    auto timed = TimedCommand::parse(line);
    if (!timed) return tl::unexpected(timed.error());
    if (!script.empty() && timed->due < script.back().due) {
        return tl::make_unexpected("this time is before that of the line before");
    }
    script.push_back(*std::move(timed));
    return {};
}

} // namespace

tl::expected<TimedCommand, std::string> TimedCommand::parse(std::string_view line) {
    constexpr double longest = 1e9; // seconds
    const auto begin = std::min(line.find_first_not_of(command::blanks), line.size());
    const auto end = std::min(line.find_first_of(command::blanks, begin), line.size());
    const auto seconds = decimalNumber(line.substr(begin, end - begin));
    if (!seconds || *seconds < 0.0 || *seconds > longest) {
        return tl::make_unexpected("a line begins with the time of its command, in seconds");
    }
    return command::parse(line.substr(end)).map([&](const command::Command& command) {
        return TimedCommand{.due = std::chrono::milliseconds(std::llround(*seconds * 1000.0)),
                            .command = command,
                            .line = std::string(line)};
    });
}

tl::expected<Script, std::string> readScript(const std::filesystem::path& file) {
    std::ifstream lines(file);
    Script script;
    std::string line;
    for (int number = 1; std::getline(lines, line); ++number) {
        const auto appended = append(script, line);
        if (!appended) return tl::unexpected(file.string() + ':' + std::to_string(number) + ": " + appended.error());
    }
    if (!lines.eof()) return tl::unexpected(file.string() + ": " + std::generic_category().message(errno));
    return script;
}

} // namespace quiverly
