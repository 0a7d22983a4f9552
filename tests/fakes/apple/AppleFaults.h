#pragma once

#include <atomic>
#include <cstdint>
#include <vector>

namespace quiverly {

// What can go wrong inside Apple's frameworks beyond what the virtual registry scripts. In force while it is alive;
// one at a time. Set it up before the call that it is to spoil.
struct AppleFaults {
    AppleFaults();
    ~AppleFaults();
    AppleFaults(const AppleFaults&) = delete;
    AppleFaults& operator=(const AppleFaults&) = delete;

    bool noStrings = false;                  // CFStringCreateWithCString answers null
    bool noNumbers = false;                  // CFNumberCreate answers null
    bool failedLookupHasIterator = false;    // a lookup that fails gives out an iterator all the same
    bool emptyLookupHasNoIterator = false;   // a lookup that finds nothing succeeds without an iterator
    bool propertiesComeWithAnError = false;  // the properties can be read, and the result says otherwise
    std::atomic<bool> deviceIsGone = false;  // it is a source of no run loop any more
    std::vector<std::uint8_t> delayedReport; // unless empty: reaches the callback after the device was unscheduled

    // The stand-ins ask these.
    static bool occurs(bool AppleFaults::*fault);
    static bool deviceHasGone();
    static std::vector<std::uint8_t> reportAfterUnscheduling();
};

} // namespace quiverly
