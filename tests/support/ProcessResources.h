#pragma once

#include <filesystem>
#include <iterator>

namespace quiverly {

// Threads and open descriptors of this program.
struct ProcessResources {
    static ProcessResources now() {
        return {.threads = entries("/proc/self/task"), .descriptors = entries("/proc/self/fd")};
    }

    bool operator==(const ProcessResources&) const = default;

    std::ptrdiff_t threads;
    std::ptrdiff_t descriptors;

private:
    static std::ptrdiff_t entries(const char* folder) {
        return std::distance(std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator());
    }
};

} // namespace quiverly
