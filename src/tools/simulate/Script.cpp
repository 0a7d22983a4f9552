#include "tools/simulate/Script.h"

#include <cerrno>
#include <fstream>
#include <system_error>

namespace quiverly {

std::variant<Script, command::Mistake> readScript(const std::filesystem::path& file) {
    const auto systemError = [&] {
        return command::Mistake{file.string() + ": " + std::generic_category().message(errno)};
    };
    std::ifstream lines(file);
    if (!lines) return systemError();

    Script script;
    std::string line;
    for (int number = 1; std::getline(lines, line); ++number) {
        if (command::saysNothing(line)) continue;
        const auto place = file.string() + ':' + std::to_string(number) + ": ";
        auto parsed = command::parseTimed(line);
        if (const auto* mistake = std::get_if<command::Mistake>(&parsed)) {
            return command::Mistake{place + mistake->text};
        }
        auto& timed = std::get<command::Timed>(parsed);
        if (!script.empty() && timed.due < script.back().due) {
            return command::Mistake{place + "this time is before that of the line before"};
        }
        script.push_back(timed);
    }
    if (lines.bad()) return systemError();
    return script;
}

} // namespace quiverly
