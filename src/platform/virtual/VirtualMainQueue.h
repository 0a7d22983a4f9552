#pragma once

#include <chrono>
#include <utility>
#include <vector>

#include "platform/main_queue.h"
#include "platform/shared/JobQueue.h"

namespace quiverly {

// The main queue of the virtual platform. Jobs run when they are drained, delayed ones when this queue's own clock,
// which is not the calendar, has been advanced to their time. Inside a job nothing else runs, whatever it calls here:
// the job's own turn has to end first.
class VirtualMainQueue {
public:
    // Runs what waits, and what that posts, until nothing waits.
    void drain();

    // Runs what waits now, but not what that posts. Whether there was anything to run.
    bool runTurn();

    // Lets that much time pass for delayed jobs, running each at its time, then drains.
    void advance(double seconds);

    void post(mainQueue::Job job) { jobs.push(std::move(job)); }
    void postAfter(double seconds, mainQueue::Job job);

private:
    struct Delayed {
        std::chrono::nanoseconds due; // on this queue's clock
        mainQueue::Job job;
    };

    JobQueue jobs;
    bool running = false;         // a job
    std::vector<Delayed> delayed; // by time, then in the order posted
    std::chrono::nanoseconds clock{0};
};

} // namespace quiverly
