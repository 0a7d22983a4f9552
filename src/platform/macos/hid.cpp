#include "platform/hid.h"

#include <chrono>
#include <thread>
#include <utility>

#include <CoreFoundation/CoreFoundation.h>
#include <IOKit/IOKitLib.h>
#include <IOKit/hid/IOHIDDevice.h>

#include "platform/macos/CFHandle.h"
#include "platform/macos/IOHandle.h"

namespace quiverly {

struct hid::Matching {
    CFHandle<CFMutableDictionaryRef> dictionary;
};

struct hid::Services {
    IOHandle iterator;
};

struct hid::Service {
    IOHandle entry;
};

struct hid::Properties {
    CFHandle<CFMutableDictionaryRef> dictionary;
};

struct hid::Device {
    CFHandle<IOHIDDeviceRef> reference;
    InputReportCallback callback = nullptr;
    void* context = nullptr;
    bool scheduled = false; // sensor thread only
};

namespace {

constexpr IOOptionBits noOptions = 0;

CFHandle<CFStringRef> makeString(const char* text) {
    return CFHandle<CFStringRef>(CFStringCreateWithCString(kCFAllocatorDefault, text, kCFStringEncodingUTF8));
}

// A report that was already on its way when the device was unscheduled is dropped.
void inputReport(void* context, IOReturn result, void* sender, IOHIDReportType type, std::uint32_t reportID,
                 std::uint8_t* report, CFIndex reportLength) {
    const auto& device = *static_cast<const hid::Device*>(context);
    if (!device.scheduled) return;
    device.callback(device.context, result, sender, type, reportID, report, reportLength);
}

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
    CFHandle<CFMutableDictionaryRef> dictionary(IOServiceMatching(className));
    return Handle<Matching>(dictionary ? new Matching{std::move(dictionary)} : nullptr);
}

hid::Handle<hid::Services> hid::findServices(Handle<Matching> matching) {
    io_iterator_t iterator = IO_OBJECT_NULL;
    const kern_return_t result =
        IOServiceGetMatchingServices(kIOMainPortDefault, matching->dictionary.release(), &iterator); // consumes it
    Handle<Services> services(new Services{IOHandle(iterator)});
    return result == KERN_SUCCESS ? std::move(services) : nullptr;
}

hid::Handle<hid::Service> hid::nextService(Services& services) {
    const io_service_t entry = IOIteratorNext(services.iterator.get());
    return Handle<Service>(entry != IO_OBJECT_NULL ? new Service{IOHandle(entry)} : nullptr);
}

hid::Handle<hid::Properties> hid::readProperties(const Service& service) {
    CFMutableDictionaryRef dictionary = nullptr;
    IORegistryEntryCreateCFProperties(service.entry.get(), &dictionary, kCFAllocatorDefault, noOptions);
    return Handle<Properties>(dictionary != nullptr ? new Properties{CFHandle<CFMutableDictionaryRef>(dictionary)}
                                                    : nullptr);
}

std::optional<std::int64_t> hid::integerProperty(const Properties& properties, const char* key) {
    const auto name = makeString(key);
    const CFTypeRef value = name ? CFDictionaryGetValue(properties.dictionary.get(), name.get()) : nullptr;
    if (value == nullptr || CFGetTypeID(value) != CFNumberGetTypeID()) return std::nullopt;

    const auto number = static_cast<CFNumberRef>(value);
    std::int64_t integer = 0;
    if (CFNumberIsFloatType(number) || !CFNumberGetValue(number, kCFNumberSInt64Type, &integer)) return std::nullopt;
    return integer;
}

void hid::setProperty(Service& service, const char* key, std::int32_t value) {
    const auto name = makeString(key);
    const CFHandle<CFNumberRef> number(CFNumberCreate(kCFAllocatorDefault, kCFNumberSInt32Type, &value));
    if (name && number) IORegistryEntrySetCFProperty(service.entry.get(), name.get(), number.get());
}

hid::Handle<hid::Device> hid::createDevice(const Service& service) {
    CFHandle<IOHIDDeviceRef> device(IOHIDDeviceCreate(kCFAllocatorDefault, service.entry.get()));
    return Handle<Device>(device ? new Device{std::move(device)} : nullptr);
}

hid::ReturnCode hid::open(Device& device) {
    return IOHIDDeviceOpen(device.reference.get(), noOptions);
}

void hid::close(Device& device) {
    IOHIDDeviceClose(device.reference.get(), noOptions);
}

void hid::registerInputReportCallback(Device& device, std::uint8_t* buffer, std::ptrdiff_t size,
                                      InputReportCallback callback, void* context) {
    device.callback = callback;
    device.context = context;
    IOHIDDeviceRegisterInputReportCallback(device.reference.get(), buffer, size, inputReport, &device);
}

void hid::schedule(Device& device) {
    device.scheduled = true;
    IOHIDDeviceScheduleWithRunLoop(device.reference.get(), CFRunLoopGetCurrent(), kCFRunLoopDefaultMode);
}

void hid::unschedule(Device& device) {
    device.scheduled = false;
    IOHIDDeviceUnscheduleFromRunLoop(device.reference.get(), CFRunLoopGetCurrent(), kCFRunLoopDefaultMode);
}

// A run loop on which nothing is scheduled is finished at once. A device that goes away most likely stays scheduled,
// and the run loop then waits until the time is over.
void hid::runLoop(double seconds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    const bool finished = CFRunLoopRunInMode(kCFRunLoopDefaultMode, seconds, true) == kCFRunLoopRunFinished;
    if (finished) std::this_thread::sleep_until(end);
}

} // namespace quiverly
