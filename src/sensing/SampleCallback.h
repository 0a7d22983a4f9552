#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <utility>

namespace quiverly {

// The receiver of samples: x, y, z in g. One thread may replace it while another calls it; the one being called stays
// alive until it returns. Calling an absent receiver does nothing.
class SampleCallback {
public:
    using Function = std::function<void(double x, double y, double z)>;

    SampleCallback& operator=(Function function) {
        auto next = function ? std::make_shared<const Function>(std::move(function)) : nullptr;
        const std::lock_guard lock(mutex);
        current.swap(next);
        return *this;
    }

    void operator()(double x, double y, double z) const {
        if (const auto receiver = copy()) (*receiver)(x, y, z);
    }

private:
    std::shared_ptr<const Function> copy() const {
        const std::lock_guard lock(mutex);
        return current;
    }

    mutable std::mutex mutex;
    std::shared_ptr<const Function> current;
};

} // namespace quiverly
