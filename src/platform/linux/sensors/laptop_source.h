#pragma once

#include <string_view>
#include <vector>

#include "platform/linux/sensors/SensorService.h"

namespace quiverly {

// The services of that class that this user's simulated laptop has; none when there is no such laptop. Each lookup is a
// connection of its own, except that the first one after a sensor has been opened uses that sensor's. A connection
// lives as long as something of it is in use. Main thread.
std::vector<SensorService> findSimulatedLaptop(std::string_view className);

} // namespace quiverly
