#include "tools/simulate/Command.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <vector>

#include "tools/recording/numbers.h"

namespace quiverly::command {

namespace {

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
using Result = tl::expected<Command, std::string>;

// One number of a command: above `least`, up to `most`.
struct Range {
    const char* name;
    double least, most;
};

tl::expected<double, std::string> read(std::string_view word, const Range& range) {
    const auto value = decimalNumber(word);
    if (value && *value > range.least && *value <= range.most) return *value;
    const auto text = [](double bound) { return std::to_string(static_cast<int>(bound)); };
    return tl::unexpected(std::string(range.name) + " is a number above " + text(range.least) + " and up to " +
                          text(range.most));
}

Result slap(Words words) {
    if (words.empty() || words.size() > 3) return tl::make_unexpected("usage: slap PEAK [FREQUENCY [DECAY]]");
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
        const auto value = read(words[index], settings[index].range);
        if (!value) return tl::unexpected(value.error());
        settings[index].value = *value;
    }
    return Slap{blow};
}

Result tilt(Words words) {
    const auto usage =
        tl::make_unexpected("usage: tilt X Y Z, the direction in which a sensor at rest feels its 1 g, not all zero");
    if (words.size() != 3) return usage;
    const auto x = decimalNumber(words[0]);
    const auto y = decimalNumber(words[1]);
    const auto z = decimalNumber(words[2]);
    if (!x || !y || !z) return usage;
    const double length = std::hypot(*x, *y, *z);
    if (length < 1e-9 || length > 1e9) return usage;
    return Tilt{{.x = *x, .y = *y, .z = *z}};
}

template<class Plain>
Result plain(Words words) {
    if (!words.empty()) return tl::make_unexpected("nothing follows this command");
    return Plain{};
}

struct Entry {
    std::string_view name;
    Result (*parse)(Words words);
};
constexpr Entry entries[] = {
    {"slap", slap},        {"rest", plain<Rest>},     {"tilt", tilt},
    {"type", plain<Type>}, {"walk", plain<Walk>},     {"bump", plain<Bump>},
    {"lid", plain<Lid>},   {"lift", plain<Lift>},     {"sleep", plain<Sleep>},
    {"wake", plain<Wake>}, {"vanish", plain<Vanish>}, {"appear", plain<Appear>},
    {"deny", plain<Deny>}, {"allow", plain<Allow>},   {"quit", plain<Quit>},
};

} // namespace

const std::string_view help = R"(Commands:
  slap PEAK [FREQUENCY [DECAY]]  slap: g, Hz (18), seconds (0.05)
  type, walk                     taps of keys; steps of a walk; until rest
  bump                           the table is bumped
  lid                            the lid is shut and opened again
  lift                           is picked up and put down again
  rest                           lies still
  tilt X Y Z                     lies turned, with its 1 g in that direction
  sleep, wake                    stays connected but reports nothing; reports again
  vanish, appear                 the sensor is gone; is back
  deny, allow                    opening the sensor is not permitted; is permitted
  quit                           ends the program
)";

bool isRemark(std::string_view line) {
    const auto first = line.find_first_not_of(blanks);
    return first == std::string_view::npos || line[first] == '#';
}

Result parse(std::string_view line) {
    const auto words = wordsOf(line);
    if (words.empty()) return tl::make_unexpected("a command is missing");
    const auto entry = std::ranges::find(entries, words.front(), &Entry::name);
    if (entry == std::end(entries)) return tl::unexpected("unknown command \"" + std::string(words.front()) + '"');
    return entry->parse(Words(words).subspan(1));
}

} // namespace quiverly::command
