#include "tools/simulate/CommandInput.h"

#include <unistd.h>

#include <array>
#include <span>
#include <utility>

namespace quiverly {

std::optional<std::chrono::nanoseconds> CommandInput::pause() const {
    const auto rest = nextTry - Clock::now();
    return rest > rest.zero() ? std::optional(rest) : std::nullopt;
}

std::vector<std::string> CommandInput::read() {
    std::array<char, 4096> bytes; // NOLINT: filled by the next call
    const ssize_t length = ::read(input, bytes.data(), bytes.size());
    if (length < 0) {
        nextTry = Clock::now() + std::chrono::seconds(1);
        return {};
    }
    if (length == 0) {
        input = -1;
        return {std::exchange(unfinishedLine, {})};
    }
    std::vector<std::string> lines;
    for (const char byte : std::span(bytes).first(static_cast<std::size_t>(length))) {
        if (byte == '\n') {
            lines.push_back(std::exchange(unfinishedLine, {}));
        } else if (unfinishedLine.size() <= longestLine) {
            unfinishedLine += byte;
        }
    }
    return lines;
}

} // namespace quiverly
