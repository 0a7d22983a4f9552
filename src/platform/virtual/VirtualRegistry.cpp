#include "platform/virtual/VirtualRegistry.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "platform/virtual/VirtualDevice.h"
#include "platform/virtual/VirtualPlatform.h"

namespace quiverly {

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
    auto lock = lockForThreads();
    if (openDevices.empty()) return false;
    pending = report;
    if (lock) {
        changed.notify_all();
        const auto settled = [this] { return !pending || openDevices.empty(); };
        if (!changed.wait_for(lock, std::chrono::seconds(30), settled))
            VirtualPlatform::fault("no thread takes the report");
    } else {
        VirtualPlatform::current().threads.turn();
    }
    return !std::exchange(pending, std::nullopt);
}

bool VirtualRegistry::deviceIsOpen() const {
    const std::lock_guard lock(mutex);
    return !openDevices.empty();
}

std::int64_t VirtualRegistry::reportsDelivered() const {
    const std::lock_guard lock(mutex);
    return delivered;
}

double VirtualRegistry::lastSlice() const {
    const std::lock_guard lock(mutex);
    return slice;
}

bool VirtualRegistry::canMatch(const std::string& className) const {
    tell("matching " + className);
    return !unbuildable.contains(className);
}

std::optional<std::vector<std::size_t>> VirtualRegistry::find(const std::string& className) const {
    tell("find " + className);
    if (unsearchable.contains(className)) return std::nullopt;
    std::vector<std::size_t> found;
    for (std::size_t index = 0; index < services.size(); ++index) {
        if (services[index].className == className) found.push_back(index);
    }
    return found;
}

void VirtualRegistry::tell(const std::string& call) const {
    if (onCall) onCall(call);
}

bool VirtualRegistry::runLoop(double seconds) {
    auto lock = lockForThreads();
    slice = seconds;
    if (lock) {
        changed.wait_for(lock, std::chrono::duration<double>(seconds), [this] { return pending.has_value(); });
    }
    const auto scheduledHere = [](const VirtualDevice* device) {
        return device->isScheduled && device->thread == VirtualThreads::current();
    };
    const auto found = std::find_if(openDevices.begin(), openDevices.end(), scheduledHere);
    if (!pending || found == openDevices.end()) return false;

    const VirtualDevice& device = **found;
    const std::ptrdiff_t length = std::min(std::ssize(*pending), device.size);
    std::uint8_t* const report = device.buffer + (device.size - length);
    std::copy_n(pending->begin(), length, report);
    pending.reset();
    ++delivered;
    if (lock) {
        lock.unlock();
        changed.notify_all();
    }
    device.receive(report, length);
    return true;
}

// Stepped threads are one thread, which needs no lock: holds none then.
std::unique_lock<std::mutex> VirtualRegistry::lockForThreads() const {
    std::unique_lock lock(mutex, std::defer_lock);
    if (VirtualPlatform::current().threads.real) lock.lock();
    return lock;
}

void VirtualRegistry::didOpen(VirtualDevice& device) {
    const std::lock_guard lock(mutex);
    openDevices.push_back(&device);
}

void VirtualRegistry::didClose(VirtualDevice& device) {
    const std::lock_guard lock(mutex);
    std::erase(openDevices, &device);
    changed.notify_all();
}

} // namespace quiverly
