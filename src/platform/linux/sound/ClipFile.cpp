#include "platform/linux/sound/ClipFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

namespace quiverly {

namespace {

FileDescriptor openRegularFile(const std::filesystem::path& path) {
    FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status = {};
    const bool isRegular = file && ::fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode);
    return isRegular ? std::move(file) : FileDescriptor();
}

} // namespace

ClipFile::ClipFile(const std::filesystem::path& path) : file(openRegularFile(path)) {}

std::size_t ClipFile::read(std::span<std::byte> bytes) {
    if (buffered().empty()) fill();
    const std::span<const std::byte> source = buffered();
    const std::size_t size = std::min(bytes.size(), source.size());
    std::copy_n(source.begin(), size, bytes.begin());
    position += static_cast<off_t>(size);
    return size;
}

off_t ClipFile::seek(off_t offset, int whence) {
    struct stat status = {};
    if (whence == SEEK_END && ::fstat(file.get(), &status) != 0) return -1;
    const off_t origin = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? position : status.st_size;
    off_t target = 0;
    if (__builtin_add_overflow(origin, offset, &target) || target < 0) return -1;
    return position = target;
}

// What the buffer holds from the position on.
std::span<const std::byte> ClipFile::buffered() {
    const off_t skipped = position - bufferStart;
    if (skipped < 0 || skipped >= static_cast<off_t>(bufferFill)) return {};
    return std::span(buffer).first(bufferFill).subspan(static_cast<std::size_t>(skipped));
}

void ClipFile::fill() {
    bufferStart = position;
    bufferFill = 0;
    if (reads == mostReads) return;
    ++reads;
    const ssize_t size = ::pread(file.get(), buffer.data(), buffer.size(), position);
    if (size > 0) bufferFill = static_cast<std::size_t>(size);
}

} // namespace quiverly
