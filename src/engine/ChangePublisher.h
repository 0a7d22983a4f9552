#pragma once

#include <functional>
#include <memory>
#include <vector>

namespace quiverly {

// Announces to its observers, in the order in which they came, that something is about to change. They re-read it on
// their next turn, and never write from inside the announcement. Main thread only.
class ChangePublisher {
public:
    using Observer = std::function<void()>;
    using Subscription = std::shared_ptr<const Observer>; // observes for as long as it lives

    [[nodiscard]] Subscription subscribe(Observer observer);

private:
    template<class T, class Writer>
    friend class Published;

    void send() const;

    std::vector<std::weak_ptr<const Observer>> observers;
};

} // namespace quiverly
