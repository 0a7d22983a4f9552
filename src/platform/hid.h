#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

// The registry of sensor services and the input devices behind them.
//
// Services are looked up by class name and walked in the registry's own order. A device is created for a service,
// opened, given a buffer for its input reports, and scheduled on the run loop of the thread that wants them. Each
// Handle owns what it points to and gives it back when it dies, so nothing is released by hand. The lookup belongs to
// the main thread; scheduling, running, unscheduling and closing belong to one sensor thread. No operation here waits
// longer than about a quarter of a second, but open() on a system that asks its user first.
namespace quiverly::hid {

// Result of opening a device: 0, or one of the system's own negative codes, of which these four are known by name.
using ReturnCode = std::int32_t;
inline constexpr ReturnCode success = 0;
inline constexpr ReturnCode generalError = -536870212;    // 0xE00002BC
inline constexpr ReturnCode noDevice = -536870208;        // 0xE00002C0
inline constexpr ReturnCode exclusiveAccess = -536870203; // 0xE00002C5
inline constexpr ReturnCode notPermitted = -536870174;    // 0xE00002E2

// Called on the sensor thread for each input report; `report` points into the registered buffer and holds
// `reportLength` bytes. Only context, report and reportLength carry anything this program uses.
using InputReportCallback = void (*)(void* context, ReturnCode result, void* sender, std::uint32_t reportType,
                                     std::uint32_t reportID, std::uint8_t* report, std::ptrdiff_t reportLength);

struct Matching;   // the query for all services of one class
struct Services;   // a walk over the services found
struct Service;    // one entry of the registry
struct Properties; // what a service said of itself when it was asked
struct Device;     // an input device

struct Release {
    void operator()(Matching*) const noexcept;
    void operator()(Services*) const noexcept;
    void operator()(Service*) const noexcept;
    void operator()(Properties*) const noexcept;
    void operator()(Device*) const noexcept;
};

template<class Object>
using Handle = std::unique_ptr<Object, Release>;

// Null when the query cannot be built.
Handle<Matching> matchingClass(const char* className);

// Null when the lookup fails; finding no service is not a failure. Uses up the query either way.
Handle<Services> findServices(Handle<Matching> matching);

// The next service of the walk; null at its end.
Handle<Service> nextService(Services& services);

// Null when the service has no properties that can be read.
Handle<Properties> readProperties(const Service& service);

// The property under that key; nothing when it is missing or not an integer.
std::optional<std::int64_t> integerProperty(const Properties& properties, const char* key);

// Asks the service to take the property. A refusal is ignored.
void setProperty(Service& service, const char* key, std::int32_t value);

// Null when no device can be made of the service.
Handle<Device> createDevice(const Service& service);

// Opens without seizing: other programs may read the same device. What was opened must be closed before its handle
// dies. macOS may ask the user for permission and keep the caller waiting until there is an answer, without limit.
ReturnCode open(Device& device);
void close(Device& device);

// Reports longer than `size` bytes are cut to it. Buffer and context must outlive the schedule.
void registerInputReportCallback(Device& device, std::uint8_t* buffer, std::ptrdiff_t size,
                                 InputReportCallback callback, void* context);

// Attach the open device to the calling thread's run loop, which has no other one, and detach it.
void schedule(Device& device);
void unschedule(Device& device);

// Runs the calling thread's run loop until one source has been handled, for at most that many seconds. With nothing
// left to wait for it rests until the time is over: callers may call it again and again without spinning.
void runLoop(double seconds);

} // namespace quiverly::hid
