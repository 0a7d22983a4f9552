#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>
#include <span>
#include <string>
#include <system_error>

#include <tl/expected.hpp>

namespace quiverly {

// A file that is read from front to back, or standard input.
class InputFile {
public:
    // "-" stands for standard input.
    static tl::expected<InputFile, std::error_code> open(const std::string& name);

    // Fills the chunk from its front with what there is, waiting for it if need be, and tells how many bytes that were;
    // 0 at the end.
    tl::expected<std::size_t, std::error_code> read(std::span<char> chunk);

private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    explicit InputFile(std::FILE* file) : file(file) {}

    std::unique_ptr<std::FILE, Close> file;
};

} // namespace quiverly
