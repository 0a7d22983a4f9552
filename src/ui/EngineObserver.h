#pragma once

#include <functional>

#include <QObject>

#include "engine/ChangePublisher.h"

namespace quiverly {

// Has a view re-read the engine after any number of changes: once, on the next turn of the event loop. Main thread.
class EngineObserver : public QObject {
public:
    EngineObserver(ChangePublisher& publisher, std::function<void()> refresh);

private:
    void announce();
    bool event(QEvent* event) override;

    std::function<void()> refresh;
    bool pending = false;
    ChangePublisher::Subscription subscription;
};

} // namespace quiverly
