#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <tl/expected.hpp>

namespace quiverly {

// Gives out the lines of a recording one after the other. The memory it takes does not depend on how many they are, nor
// on how long comments and blanks are; only numbers with very many digits take more.
class LineReader {
public:
    // Fills the chunk from its front and tells how many bytes it got; 0 is the end, after which it is not called again.
    using Read = std::function<tl::expected<std::size_t, std::error_code>(std::span<char> chunk)>;

    explicit LineReader(Read read, std::size_t bufferSize = 65536) : read(std::move(read)), buffer(bufferSize) {}

    // The next line without its end, valid until the next call; nothing when there is none. One that is too long for
    // the buffer says the same in fewer characters, or is cut if it is malformed whatever follows.
    tl::expected<std::optional<std::string_view>, std::error_code> next();

private:
    std::string_view unread() const { return {buffer.data() + begin, end - begin}; }
    std::string_view take(std::size_t characters);
    void moveToFront();
    void shorten();

    Read read;
    std::vector<char> buffer; // [begin, end) has been read but not given out
    std::size_t begin = 0;
    std::size_t end = 0;
    bool ended = false;
};

} // namespace quiverly
