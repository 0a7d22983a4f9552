#include "platform/hid.h"

#include "platform/virtual/VirtualDevice.h"
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
    explicit Device(std::size_t service) : device(service) {}

    VirtualDevice device;
};

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
    delete device;
}

hid::Handle<hid::Matching> hid::matchingClass(const char* className) {
    if (!registry().canMatch(className)) return nullptr;
    Handle<Matching> matching(new Matching);
    matching->className = className;
    return matching;
}

hid::Handle<hid::Services> hid::findServices(Handle<Matching> matching) {
    auto found = registry().find(matching->className);
    if (!found) return nullptr;
    Handle<Services> services(new Services);
    services->found = *std::move(found);
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
    return Handle<Device>(new Device(service.index));
}

hid::ReturnCode hid::open(Device& device) {
    return device.device.open();
}

void hid::close(Device& device) {
    device.device.close();
}

void hid::registerInputReportCallback(Device& device, std::uint8_t* buffer, std::ptrdiff_t size,
                                      InputReportCallback callback, void* context) {
    registry().lastRegistration = {buffer, size, callback, context};
    device.device.registerReceiver(buffer, size, [callback, context](std::uint8_t* report, std::ptrdiff_t length) {
        callback(context, success, nullptr, 0, 0, report, length);
    });
}

void hid::schedule(Device& device) {
    device.device.schedule();
}

void hid::unschedule(Device& device) {
    device.device.unschedule();
}

void hid::runLoop(double seconds) {
    registry().runLoop(seconds);
}

} // namespace quiverly
