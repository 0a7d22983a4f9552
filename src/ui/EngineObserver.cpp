#include "ui/EngineObserver.h"

#include <utility>

#include "platform/main_queue.h"

namespace quiverly {

EngineObserver::EngineObserver(ChangePublisher& publisher, std::function<void()> refresh)
    : refresh(std::move(refresh)), subscription(publisher.subscribe([this] { scheduleRefresh(); })) {}

void EngineObserver::scheduleRefresh() {
    if (std::exchange(*scheduled, true)) return;
    mainQueue::post([this, life = std::weak_ptr(scheduled)] {
        if (life.expired()) return;
        *scheduled = false;
        refresh();
    });
}

} // namespace quiverly
