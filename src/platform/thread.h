#pragma once

#include <cstddef>
#include <functional>
#include <memory>

namespace quiverly {

// What a thread does: begin once, turn until it answers false, end once. What the functions own is released when the
// loop has ended.
struct ThreadLoop {
    std::function<void()> begin;
    std::function<bool()> turn;
    std::function<void()> end;
};

// A thread that runs one ThreadLoop. Destroying its handle waits until the loop has ended; the owner makes turn()
// answer false first.
struct Thread;

struct JoinThread {
    void operator()(Thread*) const noexcept;
};

using ThreadHandle = std::unique_ptr<Thread, JoinThread>;

// Starts the loop on a new thread of that name, with that stack in bytes. A platform whose thread names are shorter
// cuts the name; one that slows programs out of sight does not slow this one while the thread runs. Null when the
// system has no thread to give.
ThreadHandle startThread(const char* name, std::size_t stackSize, ThreadLoop loop);

} // namespace quiverly
