#include "tools/replay/Options.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "tools/recording/Decimal.h"
#include "tools/recording/unsigned_integer.h"

namespace quiverly {

namespace {

struct OptionKind {
    std::string_view name;
    void (*take)(Options&, const std::string& value);
    bool hasValue = true;
};

double number(const std::string& text) {
    const auto value = Decimal::finiteNumber(text);
    if (!value) throw UnusableOptions{"'" + text + "' is no number such as 0.12"};
    return *value;
}

std::uint64_t seed(const std::string& text) {
    const auto value = unsignedInteger(text);
    if (!value) throw UnusableOptions{"'" + text + "' is no unsigned 64-bit integer"};
    return *value;
}

const std::string& folder(const std::string& text) {
    if (text.empty()) throw UnusableOptions{"a folder needs a name"};
    return text;
}

constexpr OptionKind kinds[] = {
    {"--samples", [](Options& options, const std::string&) { options.samples = true; }, false},
    {"--pack", [](Options& options, const std::string& value) { options.pack = value; }},
    {"--threshold", [](Options& options, const std::string& value) { options.threshold = number(value); }},
    {"--resources", [](Options& options, const std::string& value) { options.resources = folder(value); }},
    {"--seed", [](Options& options, const std::string& value) { options.seed = seed(value); }},
    {"--help", [](Options& options, const std::string&) { options.wish = Options::Wish::help; }, false},
    {"--version", [](Options& options, const std::string&) { options.wish = Options::Wish::version; }, false},
};

const OptionKind& kindNamed(const std::string& name) {
    const auto kind = std::ranges::find(kinds, name, &OptionKind::name);
    if (kind == std::end(kinds)) throw UnusableOptions{"there is no option " + name};
    return *kind;
}

// Goes through the arguments; throws UnusableOptions.
class ArgumentReader {
public:
    explicit ArgumentReader(std::span<const char* const> arguments) : rest(arguments) {}

    Options read() {
        while (!rest.empty()) {
            takeArgument(takeNext());
            if (options.wish != Options::Wish::replay) return options;
        }
        if (recordings.empty()) throw UnusableOptions{"a recording is missing"};
        if (recordings.size() > 1) throw UnusableOptions{"only one recording can be replayed"};
        options.recording = recordings.front();
        return options;
    }

private:
    std::string takeNext() {
        std::string argument = rest.front();
        rest = rest.subspan(1);
        return argument;
    }

    void takeArgument(const std::string& argument) {
        if (optionsEnded || argument == "-" || !argument.starts_with('-')) {
            recordings.push_back(argument);
        } else if (argument == "--") {
            optionsEnded = true;
        } else {
            takeOption(argument);
        }
    }

    void takeOption(const std::string& argument) {
        const auto equals = argument.find('=');
        const std::string name = argument.substr(0, equals);
        const OptionKind& kind = kindNamed(name);
        std::optional<std::string> value;
        if (equals != std::string::npos) value = argument.substr(equals + 1);
        if (value && !kind.hasValue) throw UnusableOptions{name + " takes no value"};
        if (!value && kind.hasValue) {
            if (rest.empty()) throw UnusableOptions{name + " needs a value"};
            value = takeNext();
        }
        kind.take(options, value.value_or(""));
    }

    std::span<const char* const> rest;
    Options options;
    std::vector<std::string> recordings;
    bool optionsEnded = false;
};

} // namespace

std::variant<Options, UnusableOptions> parseOptions(std::span<const char* const> arguments) {
    try {
        return ArgumentReader(arguments).read();
    } catch (const UnusableOptions& unusable) {
        return unusable;
    }
}

} // namespace quiverly
