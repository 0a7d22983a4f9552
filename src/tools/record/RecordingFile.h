#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <mutex>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include <tl/expected.hpp>

#include "sockets/FileDescriptor.h"

namespace quiverly {

// A recording as it is written, in the format that quiverly-replay reads. Each line goes to the system at once and as a
// whole, so that a crash loses at most the last one, and none is kept in memory. Any thread; lines stand in the order
// in which they were added.
class RecordingFile {
public:
    // A new file that only its user may read. The error is the reason why there cannot be one.
    static tl::expected<FileDescriptor, std::string> create(const std::filesystem::path& file);

    explicit RecordingFile(FileDescriptor file) : file(std::move(file)) {}

    void addComment(std::string_view text); // one line; control characters become blanks
    void addCommand(std::string_view command, std::chrono::nanoseconds time);
    void addReport(std::span<const std::uint8_t> report, std::chrono::nanoseconds time);

    std::int64_t reports() const { return written; }

    // Why the file could not be written, or nothing. After that nothing is added, and the file ends with a whole line.
    std::string error() const;

private:
    void add(const std::string& line);

    const FileDescriptor file;
    std::atomic<std::int64_t> written = 0;
    mutable std::mutex mutex; // of all that follows
    std::int64_t length = 0;  // bytes
    std::string reason;
};

} // namespace quiverly
