#include "engine/ChangePublisher.h"

#include <utility>

namespace quiverly {

ChangePublisher::Subscription ChangePublisher::subscribe(Observer observer) {
    std::erase_if(observers, [](const auto& other) { return other.expired(); });
    auto subscription = std::make_shared<const Observer>(std::move(observer));
    observers.push_back(subscription);
    return subscription;
}

void ChangePublisher::send() const {
    const auto present = observers; // an observer may come or go meanwhile
    for (const auto& observer : present) {
        if (const auto alive = observer.lock()) (*alive)();
    }
}

} // namespace quiverly
