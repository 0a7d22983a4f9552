#include "tools/simulate/registry.h"

#include <string>
#include <vector>

namespace quiverly {

namespace {

using laptop::Value;

RegistryEntry driver(Role role, const char* name) {
    return {.role = role, .hello = {.className = "AppleSPUHIDDriver", .properties = {{"Product", std::string(name)}}}};
}

RegistryEntry device(Role role, const char* name, Value usagePage, Value usage) {
    return {.role = role,
            .hello = {.className = "AppleSPUHIDDevice",
                      .properties = {{"PrimaryUsagePage", std::move(usagePage)},
                                     {"PrimaryUsage", std::move(usage)},
                                     {"Product", std::string(name)}}}};
}

RegistryEntry nameless() {
    return {.role = Role::decoy, .hello = {.className = "AppleSPUHIDDevice", .properties = {}}};
}

} // namespace

std::span<const RegistryEntry> registry() {
    static const std::vector<RegistryEntry> entries = {
        driver(Role::decoy, "Gyroscope driver"),
        driver(Role::accelerometerDriver, "Accelerometer driver"),
        device(Role::decoy, "Gyroscope", 0xFF00, 9),
        device(Role::decoy, "Lid angle", 0x20, 3),
        device(Role::decoy, "Labelled in words", std::string("65280"), std::string("3")),
        nameless(),
        device(Role::accelerometer, "Accelerometer", 0xFF00, 3),
        device(Role::decoy, "Ambient light", 0xFF00, 4),
    };
    return entries;
}

} // namespace quiverly
