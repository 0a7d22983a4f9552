#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <utility>
#include <vector>

namespace quiverly {

// The bytes of a stream one after the other, read in chunks: constant memory however long the stream is.
class ByteSource {
public:
    static constexpr int end = -1;

    // Fills the span from its front and tells how many bytes it got; none is the end, after which nobody asks again.
    using Read = std::function<std::size_t(std::span<char> chunk)>;

    explicit ByteSource(Read read, std::size_t chunkSize = 65536) : read(std::move(read)), chunk(chunkSize) {}

    // The next byte (0 to 255), or the one after it; `end` where there is none.
    int peek() { return has(1) ? byteAt(position) : end; }
    int peekSecond() { return has(2) ? byteAt(position + 1) : end; }

    // Goes past the next byte, which has been peeked at.
    void take() { ++position; }

    // Goes past the next line feed; to the end when there is none.
    void skipLine();

private:
    bool has(std::size_t bytes) { return filled - position >= bytes || fetch(bytes); }
    bool fetch(std::size_t bytes);
    int byteAt(std::size_t index) const { return static_cast<unsigned char>(chunk[index]); }

    Read read;
    std::vector<char> chunk; // at least two bytes
    std::size_t position = 0;
    std::size_t filled = 0;
    bool ended = false;
};

} // namespace quiverly
