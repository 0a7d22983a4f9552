#include "platform/virtual/VirtualRegistry.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "platform/virtual/VirtualPlatform.h"

namespace quiverly {

namespace {

VirtualRegistry& registry() {
    return VirtualPlatform::current().registry;
}

// Whatever the port gives out is counted until it comes back.
struct Lent {
    Lent() { registry().lend(1); }
    ~Lent() { registry().lend(-1); }
    Lent(const Lent&) = delete;
    Lent& operator=(const Lent&) = delete;
};

} // namespace

struct hid::Matching : Lent {
    std::string className;
};

struct hid::Services : Lent {
    std::vector<std::size_t> found;
    std::size_t next = 0;
};

struct hid::Service : Lent {
    std::size_t index = 0;
    VirtualService described;
};

struct hid::Properties : Lent {
    VirtualService::Properties values;
};

struct hid::Device : Lent {
    std::string name; // index of its service
    ReturnCode openResult = success;
    bool open = false;
    bool scheduled = false;
    const Thread* thread = nullptr; // on whose run loop it is scheduled
    std::uint8_t* buffer = nullptr;
    std::ptrdiff_t size = 0;
    InputReportCallback callback = nullptr;
    void* context = nullptr;
};

VirtualService VirtualService::driver() {
    return {.className = "AppleSPUHIDDriver"};
}

VirtualService VirtualService::accelerometer() {
    return device(0xFF00, 3);
}

VirtualService VirtualService::device(std::int64_t usagePage, std::int64_t usage) {
    return {.className = "AppleSPUHIDDevice",
            .properties = Properties{{"PrimaryUsagePage", usagePage}, {"PrimaryUsage", usage}}};
}

bool VirtualRegistry::deliver(std::span<const std::uint8_t> report) {
    VirtualThreads& threads = VirtualPlatform::current().threads;
    std::unique_lock lock(mutex);
    if (openDevices.empty()) return false;
    pending = report;
    if (threads.real) {
        changed.notify_all();
        const auto settled = [this] { return !pending || openDevices.empty(); };
        if (!changed.wait_for(lock, std::chrono::seconds(30), settled)) VirtualPlatform::fault("nobody takes a report");
    } else {
        lock.unlock();
        threads.turn();
        lock.lock();
    }
    return !std::exchange(pending, std::nullopt);
}

bool VirtualRegistry::deviceIsOpen() const {
    const std::lock_guard lock(mutex);
    return !openDevices.empty();
}

void VirtualRegistry::tell(const std::string& call) const {
    if (onCall) onCall(call);
}

void VirtualRegistry::runLoop(double seconds) {
    std::unique_lock lock(mutex);
    if (VirtualPlatform::current().threads.real) {
        changed.wait_for(lock, std::chrono::duration<double>(seconds), [this] { return pending.has_value(); });
    }
    const auto scheduledHere = [](const hid::Device* device) {
        return device->scheduled && device->thread == VirtualThreads::current();
    };
    const auto found = std::ranges::find_if(openDevices, scheduledHere);
    if (!pending || found == openDevices.end()) return;

    const hid::Device& device = **found;
    const std::ptrdiff_t length = std::min(std::ssize(*pending), device.size);
    std::copy_n(pending->begin(), length, device.buffer);
    pending.reset();
    ++delivered;
    lock.unlock();
    changed.notify_all();
    device.callback(device.context, hid::success, nullptr, 0, 0, device.buffer, length);
}

void VirtualRegistry::didOpen(hid::Device& device) {
    const std::lock_guard lock(mutex);
    openDevices.push_back(&device);
}

void VirtualRegistry::didClose(hid::Device& device) {
    const std::lock_guard lock(mutex);
    std::erase(openDevices, &device);
    changed.notify_all();
}

void hid::Release::operator()(Matching* matching) const noexcept {
    delete matching;
}

void hid::Release::operator()(Services* services) const noexcept {
    registry().tell("release services");
    delete services;
}

void hid::Release::operator()(Service* service) const noexcept {
    registry().tell("release " + std::to_string(service->index));
    delete service;
}

void hid::Release::operator()(Properties* properties) const noexcept {
    delete properties;
}

void hid::Release::operator()(Device* device) const noexcept {
    if (device->open) VirtualPlatform::fault("a device was released while it was open");
    registry().tell("release device " + device->name);
    delete device;
}

hid::Handle<hid::Matching> hid::matchingClass(const char* className) {
    registry().tell(std::string("matching ") + className);
    if (registry().unbuildable.contains(className)) return nullptr;
    Handle<Matching> matching(new Matching);
    matching->className = className;
    return matching;
}

hid::Handle<hid::Services> hid::findServices(Handle<Matching> matching) {
    registry().tell("find " + matching->className);
    if (registry().unsearchable.contains(matching->className)) return nullptr;
    Handle<Services> services(new Services);
    for (std::size_t index = 0; index < registry().services.size(); ++index) {
        if (registry().services[index].className == matching->className) services->found.push_back(index);
    }
    return services;
}

hid::Handle<hid::Service> hid::nextService(Services& services) {
    if (services.next == services.found.size()) return nullptr;
    Handle<Service> service(new Service);
    service->index = services.found[services.next++];
    service->described = registry().services[service->index];
    registry().tell("next " + std::to_string(service->index));
    return service;
}

hid::Handle<hid::Properties> hid::readProperties(const Service& service) {
    registry().tell("properties " + std::to_string(service.index));
    if (!service.described.properties) return nullptr;
    Handle<Properties> properties(new Properties);
    properties->values = *service.described.properties;
    return properties;
}

std::optional<std::int64_t> hid::integerProperty(const Properties& properties, const char* key) {
    const auto found = properties.values.find(key);
    if (found == properties.values.end()) return std::nullopt;
    const std::int64_t* number = std::get_if<std::int64_t>(&found->second);
    return number ? std::optional(*number) : std::nullopt;
}

void hid::setProperty(Service& service, const char* key, std::int32_t value) {
    registry().tell("set " + std::to_string(service.index) + ' ' + key + ' ' + std::to_string(value));
}

hid::Handle<hid::Device> hid::createDevice(const Service& service) {
    registry().tell("create " + std::to_string(service.index));
    if (!service.described.canBecomeDevice) return nullptr;
    Handle<Device> device(new Device);
    device->name = std::to_string(service.index);
    device->openResult = service.described.openResult;
    return device;
}

hid::ReturnCode hid::open(Device& device) {
    registry().tell("open " + device.name);
    if (device.open) VirtualPlatform::fault("a device was opened twice");
    if (device.openResult == success) {
        device.open = true;
        registry().didOpen(device);
    }
    return device.openResult;
}

void hid::close(Device& device) {
    registry().tell("close " + device.name);
    if (!device.open) VirtualPlatform::fault("a device was closed that was not open");
    if (device.scheduled) VirtualPlatform::fault("a device was closed while it was scheduled");
    device.open = false;
    registry().didClose(device);
}

void hid::registerInputReportCallback(Device& device, std::uint8_t* buffer, std::ptrdiff_t size,
                                      InputReportCallback callback, void* context) {
    registry().tell("register " + device.name + ' ' + std::to_string(size));
    device.buffer = buffer;
    device.size = size;
    device.callback = callback;
    device.context = context;
}

void hid::schedule(Device& device) {
    registry().tell("schedule " + device.name);
    if (!device.open || device.scheduled) VirtualPlatform::fault("a device was scheduled closed, or twice");
    device.scheduled = true;
    device.thread = VirtualThreads::current();
}

void hid::unschedule(Device& device) {
    registry().tell("unschedule " + device.name);
    if (!device.scheduled || device.thread != VirtualThreads::current()) {
        VirtualPlatform::fault("a device was unscheduled on another thread than scheduled");
    }
    device.scheduled = false;
}

void hid::runLoop(double seconds) {
    registry().runLoop(seconds);
}

} // namespace quiverly
