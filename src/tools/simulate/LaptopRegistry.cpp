#include "tools/simulate/LaptopRegistry.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace quiverly {

namespace {

using laptop::ServiceHello;
using laptop::Value;

ServiceHello namedDriver(const char* name) {
    return {.className = "AppleSPUHIDDriver", .properties = {{"Product", std::string(name)}}};
}

ServiceHello device(const char* name, Value usagePage, Value usage) {
    return {.className = "AppleSPUHIDDevice",
            .properties = {{"PrimaryUsagePage", std::move(usagePage)},
                           {"PrimaryUsage", std::move(usage)},
                           {"Product", std::string(name)}}};
}

constexpr const char* knownProperties[] = {
    "SensorPropertyReportingState",
    "SensorPropertyPowerState",
    "ReportInterval",
};

} // namespace

std::span<const ServiceHello> LaptopRegistry::services() {
    static const std::vector<ServiceHello> all = {
        namedDriver("Gyroscope driver"),
        namedDriver("Accelerometer driver"),
        device("Gyroscope", 0xFF00, 9),
        device("Lid angle", 0x20, 3),
        device("Labelled in words", std::string("65280"), std::string("3")),
        {.className = "AppleSPUHIDDevice", .properties = {}},
        device("Accelerometer", 0xFF00, 3),
        device("Ambient light", 0xFF00, 4),
    };
    return all;
}

void LaptopRegistry::accelerometerClosed() {
    if (--opened == 0) properties.clear();
}

tl::expected<void, std::error_code> LaptopRegistry::write(std::uint8_t service, const std::string& key,
                                                          std::int32_t value) {
    if (service >= services().size()) return tl::unexpected(std::make_error_code(std::errc::no_such_device));
    if (service != driver) return {};
    if (std::ranges::find(knownProperties, key) == std::end(knownProperties)) {
        return tl::unexpected(std::make_error_code(std::errc::not_supported));
    }
    if (opened > 0) properties[key] = value;
    return {};
}

bool LaptopRegistry::isReporting() const {
    return properties.size() == std::size(knownProperties) &&
           std::ranges::all_of(properties, [](const auto& property) { return property.second > 0; });
}

} // namespace quiverly
