#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include "platform/hid.h"

namespace quiverly {

struct Thread;

// The device of one service, on the registry that is alive. It belongs to the implementation of the port.
class VirtualDevice {
public:
    explicit VirtualDevice(std::size_t service);
    ~VirtualDevice();
    VirtualDevice(const VirtualDevice&) = delete;
    VirtualDevice& operator=(const VirtualDevice&) = delete;

    hid::ReturnCode open();
    void close();

    // Calls `receive` on the sensor thread with each report. Reports are put at the end of the buffer, so that reading
    // past a report leaves the buffer.
    using Receiver = std::function<void(std::uint8_t* report, std::ptrdiff_t length)>;
    void registerReceiver(std::uint8_t* buffer, std::ptrdiff_t size, Receiver receive);

    void schedule();
    void unschedule();

private:
    friend class VirtualRegistry;

    std::string name; // index of the service
    hid::ReturnCode openResult;
    bool isOpen = false;
    bool isScheduled = false;
    const Thread* thread = nullptr; // on whose run loop it is scheduled
    std::uint8_t* buffer = nullptr;
    std::ptrdiff_t size = 0;
    Receiver receive;
};

} // namespace quiverly
