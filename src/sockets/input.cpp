#include "sockets/input.h"

#include <algorithm>
#include <thread>

namespace quiverly {

bool waitForInput(std::span<pollfd> inputs, std::chrono::nanoseconds longest) {
    using std::chrono::nanoseconds;
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + longest;
    for (nanoseconds rest = longest;; rest = end - Clock::now()) {
        rest = std::max(rest, nanoseconds::zero());
        const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(rest);
        const timespec limit{.tv_sec = seconds.count(), .tv_nsec = (rest - seconds).count()};
        const int ready = ::ppoll(inputs.data(), inputs.size(), &limit, nullptr);
        if (ready >= 0) return ready > 0;
        if (rest == nanoseconds::zero()) return false;
        // A failing wait returns at once: without a pause, one that goes on failing would take a whole core.
        std::this_thread::sleep_for(std::min<nanoseconds>(rest, std::chrono::milliseconds(1)));
    }
}

} // namespace quiverly
