#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace quiverly {

// Waits until the condition holds, looking again and again; after a minute the test has failed and this answers false.
template<class Condition>
bool waitUntil(Condition condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            ADD_FAILURE() << "waited for a minute in vain";
            return false;
        }
        std::this_thread::yield();
    }
    return true;
}

} // namespace quiverly
