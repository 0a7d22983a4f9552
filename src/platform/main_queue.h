#pragma once

#include <functional>

// The jobs of the main thread: run there one at a time, in the order in which they were posted, each in a turn of the
// event loop after the one that posted it. A job may post jobs and may destroy whatever posted it.
namespace quiverly::mainQueue {

using Job = std::function<void()>;

// Any thread.
void post(Job job);

// Main thread. Runs the job no sooner than that many seconds from now.
void postAfter(double seconds, Job job);

} // namespace quiverly::mainQueue
