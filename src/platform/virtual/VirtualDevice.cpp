#include "platform/virtual/VirtualDevice.h"

#include <mutex>
#include <utility>

#include "platform/virtual/VirtualPlatform.h"

namespace quiverly {

namespace {

VirtualRegistry& registry() {
    return VirtualPlatform::current().registry;
}

} // namespace

VirtualDevice::VirtualDevice(std::size_t service)
    : name(std::to_string(service)), openResult(registry().services[service].openResult) {}

VirtualDevice::~VirtualDevice() {
    if (isOpen) VirtualPlatform::fault("a device was released while it was open");
    registry().tell("release device " + name);
}

hid::ReturnCode VirtualDevice::open() {
    registry().tell("open " + name);
    if (isOpen) VirtualPlatform::fault("a device was opened twice");
    if (openResult == hid::success) {
        isOpen = true;
        registry().didOpen(*this);
    }
    return openResult;
}

void VirtualDevice::close() {
    registry().tell("close " + name);
    if (!isOpen) VirtualPlatform::fault("a device was closed that was not open");
    if (isScheduled) VirtualPlatform::fault("a device was closed while it was scheduled");
    isOpen = false;
    registry().didClose(*this);
}

void VirtualDevice::registerReceiver(std::uint8_t* newBuffer, std::ptrdiff_t newSize, Receiver newReceive) {
    registry().tell("register " + name + ' ' + std::to_string(newSize));
    buffer = newBuffer;
    size = newSize;
    receive = std::move(newReceive);
}

void VirtualDevice::schedule() {
    registry().tell("schedule " + name);
    const std::lock_guard lock(registry().mutex);
    if (!isOpen || isScheduled) VirtualPlatform::fault("a device was scheduled closed, or twice");
    isScheduled = true;
    thread = VirtualThreads::current();
}

void VirtualDevice::unschedule() {
    registry().tell("unschedule " + name);
    const std::lock_guard lock(registry().mutex);
    if (!isScheduled || thread != VirtualThreads::current()) {
        VirtualPlatform::fault("a device was unscheduled on another thread than scheduled");
    }
    isScheduled = false;
}

} // namespace quiverly
