#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>

namespace quiverly {

// What a program that records sees of the sensors that the reader opens.
struct SensorTap {
    std::function<void(const std::string& description)> onOpen;  // main thread
    std::function<void(std::span<const std::uint8_t>)> onReport; // sensor thread; each report, before the reader has it
};

// Before a sensor is opened. Main thread.
void tapSensors(SensorTap tap);

} // namespace quiverly
