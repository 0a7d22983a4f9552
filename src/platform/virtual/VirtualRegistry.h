#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "platform/hid.h"

namespace quiverly {

class VirtualDevice;

// One service of the virtual registry, and how the device behind it behaves.
struct VirtualService {
    using Properties = std::map<std::string, std::variant<std::int64_t, double, bool, std::string>>;

    std::string className;
    std::optional<Properties> properties = Properties{}; // absent: they cannot be read
    bool canBecomeDevice = true;
    hid::ReturnCode openResult = hid::success;

    static VirtualService driver();
    static VirtualService accelerometer();
    static VirtualService device(std::int64_t usagePage, std::int64_t usage);
};

// The scripted registry of the virtual platform and the devices that were opened in it.
//
// Set it up before the call that it is to answer. Calls that break the order of the port (closing what is not open,
// releasing what is open) end the program with a message.
class VirtualRegistry {
public:
    std::vector<VirtualService> services; // in the order in which a walk meets them
    std::set<std::string> unbuildable;    // classes for which no query can be built
    std::set<std::string> unsearchable;   // classes whose lookup fails

    // Has a driver (service 0) and the accelerometer (service 1), and nothing else.
    void connectAccelerometer() { services = {VirtualService::driver(), VirtualService::accelerometer()}; }

    // Called for each call of the port but runLoop(), as in "open 2" for the service with index 2, on the calling
    // thread.
    std::function<void(const std::string& call)> onCall;

    // Hands one report to the open device. With stepped threads it has gone through the reader's callback when this
    // returns; with real ones it has been taken off the device. Whether it was delivered: not without an open device
    // whose thread still listens.
    bool deliver(std::span<const std::uint8_t> report);

    std::int64_t reportsDelivered() const;
    double lastSlice() const; // seconds for which the run loop was run last
    bool deviceIsOpen() const;

    // The arguments with which the port was last asked to register a callback, for tests that play the device.
    struct Registration {
        std::uint8_t* buffer = nullptr;
        std::ptrdiff_t size = 0; // bytes
        hid::InputReportCallback callback = nullptr;
        void* context = nullptr;
    };
    Registration lastRegistration;

    // Handles that the port has given out and not got back.
    std::int64_t lentObjects() const { return lent; }

    // What implements the port needs these.
    bool canMatch(const std::string& className) const;
    std::optional<std::vector<std::size_t>> find(const std::string& className) const; // indices of services
    void tell(const std::string& call) const;
    bool runLoop(double seconds); // whether a report came
    void lend(std::int64_t objects) { lent += objects; }

private:
    friend class VirtualDevice;

    void didOpen(VirtualDevice& device);
    void didClose(VirtualDevice& device);
    std::unique_lock<std::mutex> lockForThreads() const;

    mutable std::mutex mutex; // guards what follows, for real threads
    std::condition_variable changed;
    std::vector<VirtualDevice*> openDevices;
    std::optional<std::span<const std::uint8_t>> pending; // the report to be taken next
    std::int64_t delivered = 0;
    double slice = 0.0;

    std::atomic<std::int64_t> lent{0};
};

} // namespace quiverly
