#pragma once

#include <functional>
#include <memory>

namespace quiverly {

// Runs a job once some time has passed without a newer one, which takes its place. Destroyed before that, it runs none.
// Main thread only.
class Debounce {
public:
    void schedule(double seconds, std::function<void()> job);

private:
    std::shared_ptr<const bool> newest; // goes when a newer job takes its place
};

} // namespace quiverly
