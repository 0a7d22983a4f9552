#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace quiverly {

// All bytes of a file; throws when it cannot be read.
inline std::string bytesOf(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    if (!in) throw std::runtime_error("Cannot read " + file.string());
    return {std::istreambuf_iterator<char>(in), {}};
}

} // namespace quiverly
