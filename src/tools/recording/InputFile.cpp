#include "tools/recording/InputFile.h"

#include <cerrno>

#include <unistd.h>

namespace quiverly {

namespace {

tl::unexpected<std::error_code> lastError() {
    return tl::unexpected(std::error_code(errno, std::generic_category()));
}

} // namespace

tl::expected<InputFile, std::error_code> InputFile::open(const std::string& name) {
    std::FILE* const file = name == "-" ? stdin : std::fopen(name.c_str(), "r");
    if (file == nullptr) return lastError();
    return InputFile(file);
}

// Around the stream's buffer: fread() would wait until the chunk is full.
tl::expected<std::size_t, std::error_code> InputFile::read(std::span<char> chunk) {
    const ssize_t count = ::read(fileno(file.get()), chunk.data(), chunk.size());
    if (count < 0) return lastError();
    return static_cast<std::size_t>(count);
}

} // namespace quiverly
