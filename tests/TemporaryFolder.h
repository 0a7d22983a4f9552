#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace quiverly {

// A new and empty folder that goes, with all it holds, when this dies. Paths given to it are relative to it.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "quiverly-test-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr) std::abort();
        folder = name;
    }
    ~TemporaryFolder() { std::filesystem::remove_all(folder); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return folder; }

    void addFolder(const std::filesystem::path& subfolder) const {
        std::filesystem::create_directories(folder / subfolder);
    }

    // An empty file, with the folders on the way to it.
    void addFile(const std::filesystem::path& file) const {
        addFolder(file.parent_path());
        if (!std::ofstream(folder / file)) std::abort();
    }

private:
    std::filesystem::path folder;
};

} // namespace quiverly
