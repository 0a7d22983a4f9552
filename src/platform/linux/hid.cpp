#include "platform/hid.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <optional>
#include <span>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "laptop/transport.h"
#include "platform/linux/sensors/ReportReceiver.h"
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

// The device scheduled on one thread, if there is one.
class RunLoop {
public:
    void add(hid::Device& added) {
        device = &added;
        receiver.emplace(added.reports.get());
    }

    void remove(const hid::Device& removed) {
        if (device == &removed) receiver.reset();
    }

    // Until reports have been handled: those that had come. What cannot be read for the moment is tried again every
    // millisecond. Rests without a device, and with one that is gone.
    void run(std::chrono::nanoseconds longest) {
        using Clock = std::chrono::steady_clock;
        const auto end = Clock::now() + longest;
        auto rest = longest;
        do {
            if (!receiver) {
                waitForInput({}, rest);
                return;
            }
            const auto reports = receiver->receive(rest);
            if (reports && !reports->empty()) return handle(*reports);
            if (!reports) pauseAfter(reports.error());
            rest = end - Clock::now();
        } while (rest > rest.zero());
    }

private:
    void handle(ReportReceiver::Reports reports) {
        for (const auto report : reports) {
            const auto bytes = report.first(std::min(report.size(), device->buffer.size()));
            for (int count = 0; count < device->reportsPerPacket; ++count) handle(bytes);
        }
    }

    void handle(std::span<const std::uint8_t> report) {
        std::ranges::copy(report, device->buffer.begin());
        if (currentTap.onReport) currentTap.onReport(report);
        device->callback(device->context, hid::success, nullptr, 0, 0, device->buffer.data(), std::ssize(report));
    }

    void pauseAfter(const std::error_code& error) {
        if (laptop::endsConnection(error)) {
            receiver.reset();
        } else {
            waitForInput({}, std::chrono::milliseconds(1));
        }
    }

    hid::Device* device = nullptr;
    std::optional<ReportReceiver> receiver; // while the device is scheduled and there
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
