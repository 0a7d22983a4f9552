#pragma once

#include <functional>
#include <memory>

#include "engine/ChangePublisher.h"

namespace quiverly {

// Has a view re-read the engine after any number of changes: once, on the next turn of the main thread. Does nothing
// once it is destroyed. Main thread only.
class EngineObserver {
public:
    EngineObserver(ChangePublisher& publisher, std::function<void()> refresh);

private:
    void scheduleRefresh();

    std::function<void()> refresh;
    std::shared_ptr<bool> scheduled = std::make_shared<bool>(false); // the job watches it: it goes with the observer
    ChangePublisher::Subscription subscription;
};

} // namespace quiverly
