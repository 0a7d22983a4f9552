#include "tools/simulate/SensorDriver.h"

#include <algorithm>
#include <cerrno>
#include <iterator>

namespace quiverly {

namespace {

constexpr const char* knownProperties[] = {
    "SensorPropertyReportingState",
    "SensorPropertyPowerState",
    "ReportInterval",
};

} // namespace

void SensorDriver::deviceClosed() {
    if (--openDevices == 0) properties.clear();
}

int SensorDriver::write(const std::string& key, std::int32_t value) {
    if (std::ranges::find(knownProperties, key) == std::end(knownProperties)) return ENOTSUP;
    if (openDevices > 0) properties[key] = value;
    return 0;
}

bool SensorDriver::isReporting() const {
    return properties.size() == std::size(knownProperties) &&
           std::ranges::all_of(properties, [](const auto& property) { return property.second > 0; });
}

} // namespace quiverly
