#include "ui/EngineObserver.h"

#include <utility>

#include <QCoreApplication>
#include <QEvent>

namespace quiverly {

EngineObserver::EngineObserver(ChangePublisher& publisher, std::function<void()> refresh)
    : refresh(std::move(refresh)), subscription(publisher.subscribe([this] { announce(); })) {}

void EngineObserver::announce() {
    if (!std::exchange(pending, true)) QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

bool EngineObserver::event(QEvent* event) {
    if (event->type() != QEvent::User) return QObject::event(event);
    pending = false;
    refresh();
    return true;
}

} // namespace quiverly
