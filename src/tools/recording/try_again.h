#pragma once

#include <cerrno>

#include <poll.h>

namespace quiverly {

// After a system call on the descriptor has failed: whether it is worth repeating, because it was only interrupted, or
// because it could not wait itself for the event (POLLIN or POLLOUT), which has been waited for here.
inline bool mayTryAgain(int descriptor, short event) {
    if (errno == EINTR) return true;
    if (errno != EAGAIN) return false;
    pollfd awaited{descriptor, event, 0};
    return poll(&awaited, 1, -1) >= 0 || errno == EINTR;
}

} // namespace quiverly
