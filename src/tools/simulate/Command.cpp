#include "tools/simulate/Command.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <span>
#include <vector>

#include "tools/recording/Decimal.h"

namespace quiverly::command {

namespace {

constexpr std::string_view blanks = " \t\r";

std::vector<std::string_view> wordsOf(std::string_view line) {
    std::vector<std::string_view> words;
    for (auto begin = line.find_first_not_of(blanks); begin != std::string_view::npos;) {
        const auto end = std::min(line.find_first_of(blanks, begin), line.size());
        words.push_back(line.substr(begin, end - begin));
        begin = line.find_first_not_of(blanks, end);
    }
    return words;
}

using Words = std::span<const std::string_view>;
using Result = std::variant<Command, Mistake>;

// One number of a command: above `least`, up to `most`.
struct Range {
    const char* name;
    double least, most;
};

std::optional<Mistake> read(std::string_view word, const Range& range, double& value) {
    const auto read = Decimal::finiteNumber(word);
    if (read && *read > range.least && *read <= range.most) {
        value = *read;
        return std::nullopt;
    }
    const auto text = [](double bound) { return std::to_string(static_cast<int>(bound)); };
    return Mistake{std::string(range.name) + " is a number above " + text(range.least) + " and up to " +
                   text(range.most)};
}

Result slap(Words words) {
    if (words.empty() || words.size() > 3) return Mistake{"usage: slap PEAK [FREQUENCY [DECAY]]"};
    Blow blow{.peak = 0.0};
    struct {
        Range range;
        double& value;
    } const settings[] = {
        {{.name = "PEAK (g)", .least = 0.0, .most = 20.0}, blow.peak},
        {{.name = "FREQUENCY (Hz)", .least = 0.0, .most = 500.0}, blow.frequency},
        {{.name = "DECAY (seconds)", .least = 0.0, .most = 10.0}, blow.decay},
    };
    for (std::size_t index = 0; index < words.size(); ++index) {
        if (auto mistake = read(words[index], settings[index].range, settings[index].value)) return *mistake;
    }
    return Slap{blow};
}

Result tilt(Words words) {
    const Mistake usage{"usage: tilt X Y Z, the direction in which a sensor at rest feels its 1 g, not all zero"};
    if (words.size() != 3) return usage;
    const auto x = Decimal::finiteNumber(words[0]);
    const auto y = Decimal::finiteNumber(words[1]);
    const auto z = Decimal::finiteNumber(words[2]);
    if (!x || !y || !z) return usage;
    const double length = std::hypot(*x, *y, *z);
    if (length < 1e-9 || length > 1e9) return usage;
    return Tilt{{.x = *x, .y = *y, .z = *z}};
}

template<class Plain>
Result plain(Words words) {
    if (!words.empty()) return Mistake{"this command stands alone"};
    return Plain{};
}

struct Entry {
    std::string_view name;
    Result (*parse)(Words words);
};
constexpr Entry entries[] = {
    {"slap", slap},        {"rest", plain<Rest>},     {"tilt", tilt},
    {"type", plain<Type>}, {"walk", plain<Walk>},     {"sleep", plain<Sleep>},
    {"wake", plain<Wake>}, {"vanish", plain<Vanish>}, {"appear", plain<Appear>},
    {"deny", plain<Deny>}, {"allow", plain<Allow>},   {"quit", plain<Quit>},
};

Result parseWords(Words words) {
    if (words.empty()) return Mistake{"a command is missing"};
    const auto entry = std::ranges::find(entries, words.front(), &Entry::name);
    if (entry != std::end(entries)) return entry->parse(words.subspan(1));
    return Mistake{"unknown command \"" + std::string(words.front()) + '"'};
}

} // namespace

const std::string_view help = R"(Commands:
  slap PEAK [FREQUENCY [DECAY]]  slap: g, Hz (18), seconds (0.05)
  type, walk                     somebody types, or carries the laptop, until rest
  rest                           lies still
  tilt X Y Z                     lies turned, with its 1 g in that direction
  sleep, wake                    stays connected but reports nothing; reports again
  vanish, appear                 the sensor is gone; is back
  deny, allow                    nobody may open the sensor; everybody of this user may
  quit                           ends the program
)";

bool saysNothing(std::string_view line) {
    const auto first = line.find_first_not_of(blanks);
    return first == std::string_view::npos || line[first] == '#';
}

std::variant<Command, Mistake> parse(std::string_view line) {
    return parseWords(wordsOf(line));
}

std::variant<Timed, Mistake> parseTimed(std::string_view line) {
    constexpr double longest = 1e9; // seconds
    const auto words = wordsOf(line);
    const auto seconds = words.empty() ? std::nullopt : Decimal::finiteNumber(words.front());
    if (!seconds || *seconds < 0.0 || *seconds > longest) {
        return Mistake{"a line begins with the time of its command, in seconds"};
    }
    auto parsed = parseWords(Words(words).subspan(1));
    if (auto* mistake = std::get_if<Mistake>(&parsed)) return std::move(*mistake);
    return Timed{.due = std::chrono::milliseconds(std::llround(*seconds * 1000.0)),
                 .command = std::get<Command>(parsed),
                 .text = std::string(line)};
}

} // namespace quiverly::command
