#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

#include "Environment.h"

namespace quiverly {

// Sets $XDG_RUNTIME_DIR, or with null takes it away. Not while another thread may read it.
inline void setRuntimeFolder(const char* folder) {
    setVariable("XDG_RUNTIME_DIR", folder);
}

// A private folder that is $XDG_RUNTIME_DIR while this lives.
class RuntimeFolder {
public:
    RuntimeFolder() {
        std::string name = "/tmp/quiverly-test-XXXXXX";
        folder = ::mkdtemp(name.data());
        setRuntimeFolder(folder.c_str());
    }
    ~RuntimeFolder() { std::filesystem::remove_all(folder); }
    RuntimeFolder(const RuntimeFolder&) = delete;
    RuntimeFolder& operator=(const RuntimeFolder&) = delete;

    const std::filesystem::path& path() const { return folder; }

private:
    std::filesystem::path folder;
};

} // namespace quiverly
