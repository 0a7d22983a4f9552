#include <IOKit/hid/IOHIDDevice.h>

#include <algorithm>

#include "platform/virtual/VirtualDevice.h"
#include "support/apple/AppleFrameworks.h"
#include "support/apple/AppleObject.h"
#include "support/apple/IORegistry.h"

using quiverly::AppleFrameworks;
using quiverly::VirtualPlatform;

struct __IOHIDDevice : AppleObject {
    explicit __IOHIDDevice(std::size_t service) : AppleObject(device), hardware(service) {}

    quiverly::VirtualDevice hardware;
    std::uint8_t* buffer = nullptr;
    CFIndex size = 0;
    quiverly::VirtualDevice::Receiver receive;
};

namespace {

constexpr std::uint32_t reportID = 5;

void deliverDelayedReport(const __IOHIDDevice& device) {
    const auto report = AppleFrameworks::reportAfterUnscheduling();
    if (report.empty()) return;
    const CFIndex length = std::min(std::ssize(report), device.size);
    std::copy_n(report.begin(), length, device.buffer);
    device.receive(device.buffer, length);
}

void checkRunLoop(CFRunLoopRef runLoop, CFStringRef mode) {
    if (runLoop != CFRunLoopGetCurrent()) VirtualPlatform::fault("a run loop of another thread");
    if (mode != kCFRunLoopDefaultMode) VirtualPlatform::fault("another mode than the default one");
}

void checkOptions(IOOptionBits options) {
    if (options != 0) VirtualPlatform::fault("a device is seized");
}

} // namespace

IOHIDDeviceRef IOHIDDeviceCreate(CFAllocatorRef, io_service_t service) {
    const std::size_t index = quiverly::serviceNamed(service);
    auto& registry = VirtualPlatform::current().registry;
    registry.tell("create " + std::to_string(index));
    return registry.services[index].canBecomeDevice ? AppleObject::create<__IOHIDDevice>(index) : nullptr;
}

IOReturn IOHIDDeviceOpen(IOHIDDeviceRef device, IOOptionBits options) {
    checkOptions(options);
    return device->hardware.open();
}

IOReturn IOHIDDeviceClose(IOHIDDeviceRef device, IOOptionBits options) {
    checkOptions(options);
    device->hardware.close();
    return AppleFrameworks::occurs(&AppleFrameworks::deviceIsGone) ? kIOReturnNoDevice : kIOReturnSuccess;
}

void IOHIDDeviceRegisterInputReportCallback(IOHIDDeviceRef device, std::uint8_t* report, CFIndex reportLength,
                                            IOHIDReportCallback callback, void* context) {
    device->buffer = report;
    device->size = reportLength;
    device->receive = [device, callback, context](std::uint8_t* bytes, CFIndex length) {
        callback(context, kIOReturnSuccess, device, kIOHIDReportTypeInput, reportID, bytes, length);
    };
    device->hardware.registerReceiver(report, reportLength, device->receive);
}

void IOHIDDeviceScheduleWithRunLoop(IOHIDDeviceRef device, CFRunLoopRef runLoop, CFStringRef runLoopMode) {
    checkRunLoop(runLoop, runLoopMode);
    device->hardware.schedule();
    ++runLoop->sources;
}

void IOHIDDeviceUnscheduleFromRunLoop(IOHIDDeviceRef device, CFRunLoopRef runLoop, CFStringRef runLoopMode) {
    checkRunLoop(runLoop, runLoopMode);
    device->hardware.unschedule();
    --runLoop->sources;
    deliverDelayedReport(*device);
}
