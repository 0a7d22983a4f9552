#include "tools/record/RecordingFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <system_error>

namespace quiverly {

namespace {

std::string lastError() {
    return std::generic_category().message(errno);
}

// Microseconds are enough for reports a millisecond apart.
std::string inSeconds(std::chrono::nanoseconds time) {
    const auto microseconds = std::max<std::int64_t>(0, time / std::chrono::microseconds(1));
    std::array<char, 32> text;                                                // NOLINT: filled by the next call
    const int length = std::snprintf(text.data(), text.size(), "%lld.%06lld", // NOLINT: no locale in whole numbers
                                     static_cast<long long>(microseconds / 1'000'000),
                                     static_cast<long long>(microseconds % 1'000'000));
    return {text.data(), static_cast<std::size_t>(length)};
}

} // namespace

tl::expected<FileDescriptor, std::string> RecordingFile::create(const std::filesystem::path& file) {
    FileDescriptor created(::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!created) return tl::unexpected(file.string() + ": " + lastError());
    return created;
}

void RecordingFile::addComment(std::string_view text) {
    std::string line = "# " + std::string(text);
    std::ranges::replace_if(
        line, [](char byte) { return static_cast<unsigned char>(byte) < ' ' || byte == 0x7F; }, ' ');
    add(line + '\n');
}

void RecordingFile::addCommand(std::string_view command, std::chrono::nanoseconds time) {
    add(inSeconds(time) + " !" + std::string(command) + '\n');
}

void RecordingFile::addReport(std::span<const std::uint8_t> report, std::chrono::nanoseconds time) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string line = inSeconds(time) + ' ';
    for (const std::uint8_t byte : report) {
        line += digits[byte >> 4];
        line += digits[byte & 0xF];
    }
    add(line + (report.empty() ? "-\n" : "\n"));
    ++written;
}

std::string RecordingFile::error() const {
    const std::lock_guard lock(mutex);
    return reason;
}

void RecordingFile::add(const std::string& line) {
    const std::lock_guard lock(mutex);
    if (!reason.empty()) return;
    ssize_t count = 0;
    do count = ::write(file.get(), line.data(), line.size());
    while (count < 0 && errno == EINTR);
    if (count == std::ssize(line)) {
        length += count;
        return;
    }
    reason = count < 0 ? lastError() : std::generic_category().message(ENOSPC);
    const bool endsWell = count <= 0 || ::ftruncate(file.get(), length) == 0; // takes the piece of a line away
    if (!endsWell) reason += "; its last line is cut short";
}

} // namespace quiverly
