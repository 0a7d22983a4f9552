#pragma once

#include <functional>

namespace quiverly {

// While it is alive, calls an action whenever the user of a Mac asks for the program that is already running: with a
// click on its icon in the Dock, or by opening it again. Switching to the program with the keyboard is not such a
// request. One at a time, made once the event loop runs: it replaces what AppKit itself does then. Main thread.
class Reopening {
public:
    explicit Reopening(std::function<void()> action);
    ~Reopening();
    Reopening(const Reopening&) = delete;
    Reopening& operator=(const Reopening&) = delete;

private:
    struct Handler;
    Handler* handler;
};

} // namespace quiverly
