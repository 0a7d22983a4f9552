#include "engine/ChangePublisher.h"

#include <utility>

namespace quiverly {

ChangePublisher::Subscription ChangePublisher::subscribe(Observer observer) {
    auto subscription = std::make_shared<const Observer>(std::move(observer));
    observers.push_back(subscription);
    return subscription;
}

void ChangePublisher::send(const void* property) {
    std::erase_if(observers, [](const auto& observer) { return observer.expired(); });
    const auto present = observers; // an observer may come or go meanwhile
    for (const auto& observer : present) {
        if (const auto alive = observer.lock()) (*alive)(property);
    }
}

} // namespace quiverly
