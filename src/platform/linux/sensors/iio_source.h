#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

#include "platform/linux/sensors/SensorService.h"

namespace quiverly {

// The accelerometers that Linux drives, as services of that class; none of any other class than that of the motion
// sensor. What is of no use is left out, but one that may not be read is there, so that opening it says so. Main
// thread.
std::vector<SensorService> findIioSensors(std::string_view className, const std::filesystem::path& sys);

} // namespace quiverly
