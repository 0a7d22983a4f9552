#include "tools/recording/ByteSource.h"

#include <algorithm>

namespace quiverly {

void ByteSource::skipLine() {
    while (has(1)) {
        const auto rest = std::span(chunk).subspan(position, filled - position);
        const auto lineFeed = std::ranges::find(rest, '\n');
        if (lineFeed != rest.end()) {
            position += static_cast<std::size_t>(lineFeed - rest.begin()) + 1;
            return;
        }
        position = filled;
    }
}

// Makes that many bytes readable, if the stream has them. Those not yet taken move to the front.
bool ByteSource::fetch(std::size_t bytes) {
    std::copy(chunk.begin() + static_cast<std::ptrdiff_t>(position),
              chunk.begin() + static_cast<std::ptrdiff_t>(filled), chunk.begin());
    filled -= position;
    position = 0;
    while (!ended && filled < bytes) {
        const std::size_t count = read(std::span(chunk).subspan(filled));
        ended = count == 0;
        filled += count;
    }
    return filled >= bytes;
}

} // namespace quiverly
