#include "ui/Debounce.h"

#include <utility>

#include "platform/main_queue.h"

namespace quiverly {

void Debounce::schedule(double seconds, std::function<void()> job) {
    newest = std::make_shared<const bool>(true);
    mainQueue::postAfter(seconds, [life = std::weak_ptr(newest), job = std::move(job)] {
        if (!life.expired()) job();
    });
}

} // namespace quiverly
