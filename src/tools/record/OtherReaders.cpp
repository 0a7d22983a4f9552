#include "tools/record/OtherReaders.h"

#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <fstream>
#include <system_error>

namespace quiverly {

namespace {

namespace fs = std::filesystem;

bool hasOpen(const fs::path& process, const fs::path& file) {
    std::error_code forbidden;
    fs::directory_iterator entry(process / "fd", forbidden);
    for (; !forbidden && entry != fs::directory_iterator(); entry.increment(forbidden)) {
        std::error_code closed;
        if (fs::read_symlink(entry->path(), closed) == file) return true;
    }
    return false;
}

} // namespace

std::vector<OtherReader> otherReaders(const fs::path& file, const fs::path& proc) {
    std::vector<OtherReader> found;
    std::error_code failed;
    const auto real = fs::canonical(file, failed);
    if (failed) return found;
    fs::directory_iterator entry(proc, failed);
    for (; !failed && entry != fs::directory_iterator(); entry.increment(failed)) {
        const std::string number = entry->path().filename().string();
        OtherReader reader = {};
        const auto read = std::from_chars(number.data(), number.data() + number.size(), reader.process);
        if (read.ec != std::errc() || *read.ptr != '\0' || reader.process == ::getpid()) continue;
        if (!hasOpen(entry->path(), real)) continue;
        std::ifstream name(entry->path() / "comm");
        std::getline(name, reader.name);
        found.push_back(std::move(reader));
    }
    return found;
}

} // namespace quiverly
