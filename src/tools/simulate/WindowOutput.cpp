#include "tools/simulate/WindowOutput.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace quiverly {

WindowOutput::WindowOutput(FileDescriptor pipe) : pipe(std::move(pipe)) {
    ::fcntl(this->pipe.get(), F_SETFL, O_NONBLOCK);
}

void WindowOutput::report(std::int64_t millisecond, std::span<const std::uint8_t> bytes) {
    if (kept.size() >= mostKept) {
        ++dropped;
    } else {
        keep(window::Report{.millisecond = millisecond, .bytes = {bytes.begin(), bytes.end()}});
    }
    if (++reportsKept >= lot) flush();
}

void WindowOutput::tell(const window::Message& message) {
    if (kept.size() < 2 * mostKept) keep(message);
    flush();
}

void WindowOutput::keep(const window::Message& message) {
    if (dropped > 0) kept += lineOf(window::Dropped{std::exchange(dropped, 0)});
    kept += lineOf(message);
}

pollfd WindowOutput::room() const {
    return {.fd = isFull ? pipe.get() : -1, .events = POLLOUT, .revents = 0};
}

// Nothing is kept for a window that is gone.
void WindowOutput::flush() {
    reportsKept = 0;
    while (!kept.empty()) {
        const ssize_t length = ::write(pipe.get(), kept.data(), kept.size());
        if (length < 0 && errno == EINTR) continue;
        isFull = length < 0 && errno == EAGAIN;
        if (isFull) return;
        kept.erase(0, length < 0 ? kept.size() : static_cast<std::size_t>(length));
    }
}

} // namespace quiverly
