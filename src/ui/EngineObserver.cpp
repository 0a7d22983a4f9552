#include "ui/EngineObserver.h"

#include <utility>

namespace quiverly {

EngineObserver::EngineObserver(ChangePublisher& publisher, std::function<void()> refresh)
    : refresh(std::move(refresh)), subscription(publisher.subscribe([this](const void*) { announce(); })) {}

void EngineObserver::announce() {
    if (std::exchange(pending, true)) return;
    const auto read = [this] {
        pending = false;
        refresh();
    };
    QMetaObject::invokeMethod(this, read, Qt::QueuedConnection);
}

} // namespace quiverly
