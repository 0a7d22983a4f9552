#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

namespace quiverly {

// A private folder that is $XDG_RUNTIME_DIR while this lives.
class RuntimeFolder {
public:
    RuntimeFolder() {
        std::string name = "/tmp/quiverly-test-XXXXXX";
        folder = ::mkdtemp(name.data());
        ::setenv("XDG_RUNTIME_DIR", folder.c_str(), 1);
    }
    ~RuntimeFolder() { std::filesystem::remove_all(folder); }
    RuntimeFolder(const RuntimeFolder&) = delete;
    RuntimeFolder& operator=(const RuntimeFolder&) = delete;

    const std::filesystem::path& path() const { return folder; }

private:
    std::filesystem::path folder;
};

} // namespace quiverly
