#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

namespace quiverly {

// A new and empty folder that goes, with all it holds, when this dies. Paths given to it are relative to it. What
// cannot be made throws.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "quiverly-test-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("Cannot make a folder like " + name);
        folder = name;
    }
    ~TemporaryFolder() {
        std::error_code forbidden;
        std::filesystem::remove_all(folder, forbidden);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return folder; }

    // These make the folders on the way too, and answer where what they made is.
    std::filesystem::path addFolder(const std::filesystem::path& subfolder) const {
        std::filesystem::create_directories(folder / subfolder);
        return folder / subfolder;
    }
    std::filesystem::path addFile(const std::filesystem::path& file, std::string_view content = "") const {
        addFolder(file.parent_path());
        std::ofstream stream(folder / file, std::ios::binary);
        stream << content;
        stream.close();
        if (!stream) throw std::runtime_error("Cannot write " + (folder / file).string());
        return folder / file;
    }

private:
    std::filesystem::path folder;
};

} // namespace quiverly
