#include "platform/hid.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/sensors/sensor.h"
#include "platform/linux/sensors/simulated_laptop.h"
#include "sockets/input.h"

namespace quiverly {

namespace {

// The kinds of sensors, in the order in which they are asked. A kind is asked only if the walk over the services gets
// that far.
constexpr sensors::FindServices sources[] = {sensors::findSimulatedLaptop};

hid::ReturnCode returnCode(int error) {
    switch (error) {
    case 0:
        return hid::success;
    case EACCES:
    case EPERM:
        return hid::notPermitted;
    case EBUSY:
        return hid::exclusiveAccess;
    case ENODEV:
        return hid::noDevice;
    default:
        return hid::generalError;
    }
}

} // namespace

struct hid::Matching {
    std::string className;
};

struct hid::Services {
    std::string className;
    std::size_t nextSource = 0;
    std::vector<std::unique_ptr<sensors::Service>> found = {}; // by the source asked last, in reverse
};

struct hid::Service {
    std::unique_ptr<sensors::Service> service;
};

struct hid::Properties {
    sensors::Properties values;
};

struct hid::Device {
    std::unique_ptr<sensors::Device> device;
    std::span<std::uint8_t> buffer = {};
    InputReportCallback callback = nullptr;
    void* context = nullptr;
};

namespace {

// The devices scheduled on one thread. A device that has ended stays, but is not waited for any more.
class RunLoop {
public:
    void add(hid::Device& device) {
        devices.push_back(&device);
        inputs.push_back(inputOf(device.device->descriptor()));
    }

    void remove(const hid::Device& device) {
        const auto found = std::ranges::find(devices, &device);
        if (found == devices.end()) return;
        inputs.erase(inputs.begin() + (found - devices.begin()));
        devices.erase(found);
    }

    void run(std::chrono::nanoseconds longest) {
        if (!waitForInput(inputs, longest)) return;
        const auto ready = std::ranges::find_if(inputs, [](const pollfd& input) { return input.revents != 0; });
        read(*devices[static_cast<std::size_t>(ready - inputs.begin())], *ready);
    }

private:
    static void read(hid::Device& device, pollfd& input) {
        const sensors::Reading reading = device.device->read(device.buffer);
        if (reading.kind == sensors::Reading::Kind::ended) input.fd = -1;
        if (reading.kind != sensors::Reading::Kind::report) return;
        device.callback(device.context, hid::success, nullptr, 0, 0, device.buffer.data(),
                        static_cast<std::ptrdiff_t>(reading.length));
    }

    std::vector<hid::Device*> devices;
    std::vector<pollfd> inputs; // one for each device, in the same order
};

thread_local RunLoop currentRunLoop;

} // namespace

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
    return Handle<Services>(new Services{.className = std::move(matching->className)});
}

hid::Handle<hid::Service> hid::nextService(Services& services) {
    while (services.found.empty()) {
        if (services.nextSource == std::size(sources)) return nullptr;
        services.found = sources[services.nextSource++](services.className);
        std::ranges::reverse(services.found);
    }
    Handle<Service> next(new Service{std::move(services.found.back())});
    services.found.pop_back();
    return next;
}

hid::Handle<hid::Properties> hid::readProperties(const Service& service) {
    auto values = service.service->properties();
    return values ? Handle<Properties>(new Properties{std::move(*values)}) : nullptr;
}

std::optional<std::int64_t> hid::integerProperty(const Properties& properties, const char* key) {
    const auto found = properties.values.find(key);
    if (found == properties.values.end()) return std::nullopt;
    const auto* number = std::get_if<std::int64_t>(&found->second);
    return number != nullptr ? std::optional(*number) : std::nullopt;
}

void hid::setProperty(Service& service, const char* key, std::int32_t value) {
    service.service->setProperty(key, value);
}

hid::Handle<hid::Device> hid::createDevice(const Service& service) {
    auto device = service.service->createDevice();
    return device ? Handle<Device>(new Device{.device = std::move(device)}) : nullptr;
}

hid::ReturnCode hid::open(Device& device) {
    return returnCode(device.device->open());
}

void hid::close(Device& device) {
    device.device->close();
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
