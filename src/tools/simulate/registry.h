#pragma once

#include <span>

#include "laptop/protocol.h"

namespace quiverly {

enum class Role { decoy, accelerometerDriver, accelerometer };

struct RegistryEntry {
    Role role;
    laptop::ServiceHello hello;
};

// The services of the simulated laptop, in the order in which it names them: among the accelerometer and its driver
// stand others that a reader has to pass over.
std::span<const RegistryEntry> registry();

} // namespace quiverly
