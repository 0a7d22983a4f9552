#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <system_error>

namespace quiverly {

// A file that is read from front to back. What fails, the opening included, ends it and can be asked for.
class InputFile {
public:
    // "-" stands for standard input.
    explicit InputFile(const std::string& name);
    ~InputFile();
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    // Fills the chunk from its front with what there is and tells how many bytes that were; none at the end.
    std::size_t read(std::span<char> chunk);

    // Why the file ended; no error if it ended by itself.
    std::error_code error() const { return failure; }

private:
    int descriptor;
    std::error_code failure;
};

} // namespace quiverly
