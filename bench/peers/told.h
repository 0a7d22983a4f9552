#pragma once

#include <unistd.h>

#include <array>
#include <optional>
#include <string>

// The file named by the next line of standard input, which is written in one piece; nothing at its end.
inline std::optional<std::string> toldFile() {
    std::array<char, 4096> line; // NOLINT: filled by the next call
    const ssize_t size = ::read(STDIN_FILENO, line.data(), line.size());
    if (size <= 1) return std::nullopt;
    return std::string(line.data(), static_cast<std::size_t>(size - 1));
}
