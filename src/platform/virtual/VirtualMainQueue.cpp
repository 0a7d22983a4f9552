#include "platform/virtual/VirtualMainQueue.h"

#include <algorithm>
#include <utility>

#include "platform/virtual/VirtualPlatform.h"

namespace quiverly {

namespace {

std::chrono::nanoseconds nanoseconds(double seconds) {
    return std::chrono::round<std::chrono::nanoseconds>(std::chrono::duration<double>(seconds));
}

} // namespace

void VirtualMainQueue::drain() {
    while (runTurn()) {
    }
}

bool VirtualMainQueue::runTurn() {
    if (std::exchange(running, true)) return false;
    const bool ran = jobs.runTurn();
    running = false;
    return ran;
}

void VirtualMainQueue::advance(double seconds) {
    const auto target = clock + nanoseconds(seconds);
    drain();
    while (!delayed.empty() && delayed.front().due <= target) {
        clock = delayed.front().due;
        post(std::move(delayed.front().job));
        delayed.erase(delayed.begin());
        drain();
    }
    clock = target;
}

void VirtualMainQueue::postAfter(double seconds, mainQueue::Job job) {
    const auto due = clock + nanoseconds(seconds);
    const auto after =
        std::find_if(delayed.begin(), delayed.end(), [due](const Delayed& other) { return other.due > due; });
    delayed.insert(after, {due, std::move(job)});
}

void mainQueue::post(Job job) {
    VirtualPlatform::current().mainQueue.post(std::move(job));
}

void mainQueue::postAfter(double seconds, Job job) {
    VirtualPlatform::current().mainQueue.postAfter(seconds, std::move(job));
}

} // namespace quiverly
