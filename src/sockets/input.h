#pragma once

#include <poll.h>

#include <chrono>
#include <span>

namespace quiverly {

// An input to wait for, by its descriptor; a negative one is ignored.
inline pollfd inputOf(int descriptor) {
    return {.fd = descriptor, .events = POLLIN, .revents = 0};
}

// Waits until something can be read from one of the inputs or the time is over; signals do not cut the wait short. True
// when there is something to read; `revents` tell where. Without inputs it rests until the time is over.
bool waitForInput(std::span<pollfd> inputs, std::chrono::nanoseconds longest);

} // namespace quiverly
