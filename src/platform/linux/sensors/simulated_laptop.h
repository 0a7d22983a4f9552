#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "platform/linux/sensors/sensor.h"

namespace quiverly::sensors {

// The sensors of the simulated laptop that this user runs; none when there is no such laptop. Each lookup is a
// connection of its own, which lives as long as something of it is in use.
std::vector<std::unique_ptr<Service>> findSimulatedLaptop(std::string_view className);

} // namespace quiverly::sensors
