#pragma once

#include <cstdint>

// The allocations of a program that is linked with counted_allocations.cpp: those by operator new, on all threads.
namespace quiverly {

std::int64_t allocationsSoFar();

template<class Action>
std::int64_t allocationsDuring(Action action) {
    const std::int64_t before = allocationsSoFar();
    action();
    return allocationsSoFar() - before;
}

} // namespace quiverly
