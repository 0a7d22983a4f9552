#pragma once

#include <map>
#include <mutex>

// What an object of the stand-ins holds. Their classes have no variables of their own, as the real ones show none. It
// is kept when the object goes: no other ever has its address.
template<class State>
State& stateOf(id object) {
    static std::mutex mutex;
    static std::map<const void*, State> states;
    const std::lock_guard lock(mutex);
    return states[(__bridge const void*)object];
}
