#pragma once

#include <cstdlib>
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

// A folder that goes, with all that is in it, when the test ends.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "quiverly-XXXXXX").string();
        if (!::mkdtemp(name.data())) throw std::runtime_error("Cannot make a folder like " + name);
        path = name;
    }
    ~TemporaryFolder() { std::filesystem::remove_all(path); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::filesystem::path path;
};

} // namespace quiverly
