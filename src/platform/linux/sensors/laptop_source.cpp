#include "platform/linux/sensors/laptop_source.h"

#include "platform/linux/sensors/LaptopClient.h"

namespace quiverly {

std::vector<SensorService> findSimulatedLaptop(std::string_view className) {
    std::vector<SensorService> found;
    const auto laptop = LaptopClient::connect();
    if (!laptop) return found;
    std::uint8_t place = 0;
    for (const auto& service : laptop->services()) {
        if (service.className == className) {
            const auto setProperty = [laptop, place](std::string_view key, std::int32_t value) {
                laptop->writeProperty(place, key, value);
            };
            const auto open = [laptop, place] { return laptop->open(place); };
            found.push_back({.properties = service.properties, .setProperty = setProperty, .open = open});
        }
        ++place;
    }
    return found;
}

} // namespace quiverly
