#pragma once

#include <cstdlib>
#include <optional>
#include <string>

#include "support/Environment.h"
#include "support/TemporaryFolder.h"

namespace quiverly {

// Sets $XDG_RUNTIME_DIR, or with null takes it away. Not while another thread may read it.
inline void setRuntimeFolder(const char* folder) {
    setVariable("XDG_RUNTIME_DIR", folder);
}

// A private folder that is $XDG_RUNTIME_DIR while this lives.
class RuntimeFolder : public TemporaryFolder {
public:
    RuntimeFolder() {
        // NOLINTNEXTLINE(concurrency-mt-unsafe): by contract
        if (const char* folder = std::getenv("XDG_RUNTIME_DIR")) former = folder;
        setRuntimeFolder(path().c_str());
    }
    ~RuntimeFolder() { setRuntimeFolder(former ? former->c_str() : nullptr); }
    RuntimeFolder(const RuntimeFolder&) = delete;
    RuntimeFolder& operator=(const RuntimeFolder&) = delete;

private:
    std::optional<std::string> former;
};

} // namespace quiverly
