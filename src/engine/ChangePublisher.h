#pragma once

#include <functional>
#include <memory>
#include <vector>

namespace quiverly {

// Announces that a property of an object is about to change. Observers are told which one, by its address, and re-read
// the object on their next turn; they never write from inside the announcement. Main thread only.
class ChangePublisher {
public:
    using Observer = std::function<void(const void* property)>;
    using Subscription = std::shared_ptr<const Observer>; // observes for as long as it lives

    [[nodiscard]] Subscription subscribe(Observer observer);

private:
    template<class T, class Writer>
    friend class Published;

    void send(const void* property);

    std::vector<std::weak_ptr<const Observer>> observers;
};

} // namespace quiverly
