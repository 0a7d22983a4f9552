#include "tools/recording/LineReader.h"

#include <algorithm>

#include "tools/recording/blank.h"

namespace quiverly {

namespace {

// Whether a line that begins so, with one blank between its words, may be right: it has three words at most, and only
// numbers are long. The last character may belong to the line's end.
bool mayBeRight(std::string_view beginning) {
    constexpr std::size_t longestOtherWord = 512;
    const auto lastWord = beginning.substr(beginning.find_last_of(" \t") + 1);
    return std::ranges::count_if(beginning, isBlank) <= 4 &&
           (lastWord.size() <= longestOtherWord || lastWord.find_first_not_of("-.0123456789") >= lastWord.size() - 1);
}

} // namespace

tl::expected<std::optional<std::string_view>, std::error_code> LineReader::next() {
    std::size_t searched = 0;
    while (!ended) {
        const auto lineFeed = unread().find('\n', searched);
        if (lineFeed != std::string_view::npos) {
            const auto line = take(lineFeed + 1).substr(0, lineFeed);
            return line.ends_with('\r') ? line.substr(0, lineFeed - 1) : line;
        }
        moveToFront();
        if (end == buffer.size()) {
            shorten();
            if (!mayBeRight(unread())) return take(end);
            if (end > buffer.size() / 2) buffer.resize(2 * buffer.size());
        }
        searched = end;
        const auto count = read(std::span(buffer).subspan(end));
        if (!count) return tl::unexpected(count.error());
        ended = *count == 0;
        end += *count;
    }
    return unread().empty() ? std::nullopt : std::optional(take(end - begin));
}

std::string_view LineReader::take(std::size_t characters) {
    const auto taken = unread().substr(0, characters);
    begin += characters;
    return taken;
}

void LineReader::moveToFront() {
    if (begin == 0) return;
    std::ranges::copy(unread(), buffer.begin());
    end -= begin;
    begin = 0;
}

// Leaves one blank of many, and of a comment its beginning.
void LineReader::shorten() {
    const auto bothBlank = [](char left, char right) { return isBlank(left) && isBlank(right); };
    const auto line = std::span(buffer).first(end);
    end = static_cast<std::size_t>(std::unique(line.begin(), line.end(), bothBlank) - line.begin());
    const auto first = unread().find_first_not_of(" \t");
    if (first != std::string_view::npos && buffer[first] == '#') end = first + 1;
}

} // namespace quiverly
