#include "platform/hid.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <span>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "laptop/transport.h"
#include "platform/linux/sensors/SensorService.h"
#include "platform/linux/sensors/SensorTap.h"
#include "platform/linux/sensors/iio/Accelerometer.h"
#include "platform/linux/sensors/iio_source.h"
#include "platform/linux/sensors/laptop_source.h"
#include "sockets/FileDescriptor.h"
#include "sockets/input.h"

namespace quiverly {

struct hid::Matching {
    std::string className;
};

struct hid::Services {
    std::vector<SensorService> found; // by all sources, in the order in which they were asked
    std::size_t next = 0;
};

struct hid::Service : SensorService {};

struct hid::Properties {
    SensorService::Properties values;
};

struct hid::Device {
    SensorService::Open openSensor;
    std::string description;
    int reportsPerPacket = 1;
    FileDescriptor reports = {}; // while open
    std::span<std::uint8_t> buffer = {};
    InputReportCallback callback = nullptr;
    void* context = nullptr;
};

namespace {

SensorTap currentTap;

hid::ReturnCode returnCode(const std::error_code& error) {
    if (error == std::errc::permission_denied || error == std::errc::operation_not_permitted) return hid::notPermitted;
    if (error == std::errc::device_or_resource_busy) return hid::exclusiveAccess;
    if (error == std::errc::no_such_device) return hid::noDevice;
    return hid::generalError;
}

// The devices scheduled on one thread. A device that is gone stays, but is not waited for any more.
class RunLoop {
public:
    void add(hid::Device& device) {
        devices.push_back(&device);
        inputs.push_back(inputOf(device.reports.get()));
    }

    void remove(const hid::Device& device) {
        const auto found = std::ranges::find(devices, &device);
        if (found == devices.end()) return;
        inputs.erase(inputs.begin() + (found - devices.begin()));
        devices.erase(found);
    }

    // Until one packet of reports has been handled. What cannot be read for the moment is tried again every
    // millisecond.
    void run(std::chrono::nanoseconds longest) {
        using Clock = std::chrono::steady_clock;
        const auto end = Clock::now() + longest;
        while (waitForInput(inputs, end - Clock::now())) {
            const auto ready = std::ranges::find_if(inputs, [](const pollfd& input) { return input.revents != 0; });
            auto& device = *devices[static_cast<std::size_t>(ready - inputs.begin())];
            const auto length = laptop::receiveReport(ready->fd, device.buffer);
            if (length && *length) return report(device, **length);
            if (Clock::now() >= end) return;
            if (!length) pauseAfter(length.error(), *ready);
        }
    }

private:
    static void report(hid::Device& device, std::size_t length) {
        for (int count = 0; count < device.reportsPerPacket; ++count) {
            if (currentTap.onReport) currentTap.onReport(device.buffer.first(length));
            device.callback(device.context, hid::success, nullptr, 0, 0, device.buffer.data(),
                            static_cast<std::ptrdiff_t>(length));
        }
    }

    static void pauseAfter(const std::error_code& error, pollfd& input) {
        if (laptop::endsConnection(error)) {
            input.fd = -1;
        } else {
            waitForInput({}, std::chrono::milliseconds(1));
        }
    }

    std::vector<hid::Device*> devices;
    std::vector<pollfd> inputs; // one for each device, in the same order
};

thread_local RunLoop currentRunLoop;

} // namespace

void tapSensors(SensorTap tap) {
    currentTap = std::move(tap);
}

void hid::Release::operator()(Matching* matching) const noexcept {
    delete matching;
}

void hid::Release::operator()(Services* services) const noexcept {
    delete services;
}

void hid::Release::operator()(Service* service) const noexcept {
    delete service;
}

void hid::Release::operator()(Properties* properties) const noexcept {
    delete properties;
}

void hid::Release::operator()(Device* device) const noexcept {
    delete device;
}

hid::Handle<hid::Matching> hid::matchingClass(const char* className) {
    return Handle<Matching>(new Matching{className});
}

hid::Handle<hid::Services> hid::findServices(Handle<Matching> matching) {
    auto found = findSimulatedLaptop(matching->className);
    std::ranges::move(findIioSensors(matching->className, systemFolder()), std::back_inserter(found));
    return Handle<Services>(new Services{.found = std::move(found)});
}

hid::Handle<hid::Service> hid::nextService(Services& services) {
    if (services.next == services.found.size()) return nullptr;
    return Handle<Service>(new Service{std::move(services.found[services.next++])});
}

hid::Handle<hid::Properties> hid::readProperties(const Service& service) {
    return Handle<Properties>(new Properties{service.properties});
}

std::optional<std::int64_t> hid::integerProperty(const Properties& properties, const char* key) {
    const auto found = properties.values.find(key);
    if (found == properties.values.end()) return std::nullopt;
    const auto* number = std::get_if<std::int64_t>(&found->second);
    return number != nullptr ? std::optional(*number) : std::nullopt;
}

void hid::setProperty(Service& service, const char* key, std::int32_t value) {
    service.setProperty(key, value);
}

hid::Handle<hid::Device> hid::createDevice(const Service& service) {
    return Handle<Device>(new Device{
        .openSensor = service.open, .description = service.description, .reportsPerPacket = service.reportsPerPacket});
}

hid::ReturnCode hid::open(Device& device) {
    auto reports = device.openSensor();
    if (!reports) return returnCode(reports.error());
    device.reports = *std::move(reports);
    if (currentTap.onOpen) currentTap.onOpen(device.description);
    return success;
}

void hid::close(Device& device) {
    device.openSensor = nullptr; // what it holds keeps the sensor open, too
    device.reports.reset();
}

void hid::registerInputReportCallback(Device& device, std::uint8_t* buffer, std::ptrdiff_t size,
                                      InputReportCallback callback, void* context) {
    device.buffer = {buffer, static_cast<std::size_t>(size)};
    device.callback = callback;
    device.context = context;
}

void hid::schedule(Device& device) {
    currentRunLoop.add(device);
}

void hid::unschedule(Device& device) {
    currentRunLoop.remove(device);
}

void hid::runLoop(double seconds) {
    const std::chrono::duration<double> longest(seconds);
    currentRunLoop.run(std::chrono::duration_cast<std::chrono::nanoseconds>(longest));
}

} // namespace quiverly
