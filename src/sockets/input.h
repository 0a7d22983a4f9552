#pragma once

#include <poll.h>

#include <chrono>
#include <span>

namespace quiverly {

// An input to wait for, by its descriptor; a negative one is passed over.
inline pollfd inputOf(int descriptor) {
    return {.fd = descriptor, .events = POLLIN, .revents = 0};
}

// Waits until something can be read from one of the inputs, whose `revents` tell which, or the time is over; signals do
// not cut it short. Whether there is something to read. Without inputs it rests until the time is over.
bool waitForInput(std::span<pollfd> inputs, std::chrono::nanoseconds longest);

} // namespace quiverly
