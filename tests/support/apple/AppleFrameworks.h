#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace quiverly {

// What CFRunLoopRunInMode is asked.
struct RunLoopRun {
    std::string mode;
    double seconds;
    bool returnAfterSourceHandled;

    bool operator==(const RunLoopRun&) const = default;
};

// What happens inside Apple's frameworks beyond what the virtual registry scripts, and what they were asked. In force
// while it is alive; one at a time. Set it up before the call that it is to spoil.
class AppleFrameworks {
public:
    AppleFrameworks();
    ~AppleFrameworks();
    AppleFrameworks(const AppleFrameworks&) = delete;
    AppleFrameworks& operator=(const AppleFrameworks&) = delete;

    using Fault = std::atomic<bool>;
    Fault noStrings = false;                 // CFStringCreateWithCString answers null
    Fault noNumbers = false;                 // CFNumberCreate answers null
    Fault failedLookupHasIterator = false;   // a lookup that fails gives out an iterator all the same
    Fault emptyLookupHasNoIterator = false;  // a lookup that finds nothing succeeds without an iterator
    Fault propertiesComeWithAnError = false; // the properties can be read, and the result says otherwise
    Fault deviceIsGone = false;              // it stays scheduled, reports nothing, and cannot be closed
    std::vector<std::uint8_t> delayedReport; // unless empty: reaches the callback after the device was unscheduled
    std::filesystem::path executable;        // by which the program is said to have been started

    std::optional<RunLoopRun> lastRun() const; // on whichever thread

    // The stand-ins use these.
    using FaultMember = Fault AppleFrameworks::*;
    static bool occurs(FaultMember fault);
    static std::vector<std::uint8_t> reportAfterUnscheduling();
    static std::filesystem::path executablePath();
    static void tell(const RunLoopRun& run);

private:
    mutable std::mutex mutex;
    std::optional<RunLoopRun> run;
};

} // namespace quiverly
