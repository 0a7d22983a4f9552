#pragma once

#include <limits>

namespace quiverly {

// A system call that fails.
struct Fault {
    static constexpr int always = std::numeric_limits<int>::max();

    int error = 0;
    int left = 0;  // so many times more
    int calls = 0; // those that failed included

    bool strikes();
};

// Some system calls of a test program that SystemCalls.cpp is linked to; they fail on the test's thread as often as the
// test says. What other threads call succeeds.
extern thread_local Fault accepting;
extern thread_local Fault receiving;
extern thread_local Fault sending;
extern thread_local Fault polling;

// How often this thread has rested for a millisecond or longer: it slept, or waited without an input.
extern thread_local int rests;

} // namespace quiverly
