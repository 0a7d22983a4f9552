#pragma once

#include <atomic>
#include <mutex>
#include <utility>
#include <vector>

#include "platform/main_queue.h"

namespace quiverly {

// Jobs waiting for their turn. Any thread pushes; one thread runs a turn: all that had been pushed before it, in order,
// outside the lock. What a job pushes waits for the next turn. In a steady flow nothing is allocated but the jobs.
class JobQueue {
public:
    // Whether the queue was empty, so that its thread has to be woken.
    bool push(mainQueue::Job job) {
        const std::lock_guard lock(mutex);
        waiting.push_back(std::move(job));
        empty.store(false, std::memory_order_relaxed);
        return waiting.size() == 1;
    }

    // Whether there was a job to run.
    bool runTurn() {
        if (empty.load(std::memory_order_relaxed)) return false;
        std::vector<mainQueue::Job> turn = std::move(spare);
        {
            const std::lock_guard lock(mutex);
            turn.swap(waiting);
            empty.store(true, std::memory_order_relaxed);
        }
        for (mainQueue::Job& job : turn) std::exchange(job, nullptr)();
        turn.clear();
        spare = std::move(turn);
        return true;
    }

private:
    std::atomic<bool> empty = true; // written under the lock; spares a turn without jobs the lock
    std::mutex mutex;
    std::vector<mainQueue::Job> waiting;
    std::vector<mainQueue::Job> spare; // memory of the turn before; empty, and of the running thread only
};

} // namespace quiverly
