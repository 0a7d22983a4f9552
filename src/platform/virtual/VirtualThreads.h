#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/thread.h"

namespace quiverly {

// The threads of the virtual platform. They are loops that the test turns by hand, one turn at a time, unless it asks
// for real ones.
class VirtualThreads {
public:
    bool real = false;      // threads started from now on run by themselves
    bool exhausted = false; // there is no thread to give

    // Lets each loop do one turn, in the order in which they were started. Real threads need no turning.
    void turn();

    // Threads started and not yet waited for.
    std::size_t live() const { return threads.size(); }

    // Loops that have not ended; for stepped threads only.
    std::size_t looping() const;

    // The thread that is being run; null on the main thread.
    static const Thread* current();

    // What the last thread was started with.
    std::string lastName;
    std::size_t lastStackSize = 0; // bytes

private:
    friend struct Thread;

    std::vector<Thread*> threads;
};

} // namespace quiverly
