#include "platform/linux/sensors/laptop_source.h"

#include <memory>
#include <utility>

#include "platform/linux/sensors/LaptopClient.h"

namespace quiverly {

namespace {

// The laptop whose sensor was opened last, until the next lookup. Main thread.
std::weak_ptr<LaptopClient> lastOpened;

// The waking that follows an opening goes over the same connection, which stays: a laptop that is silent for too long
// is woken when it reads again.
std::shared_ptr<LaptopClient> connect() {
    auto opened = std::exchange(lastOpened, {}).lock();
    return opened ? std::move(opened) : LaptopClient::connect();
}

} // namespace

std::vector<SensorService> findSimulatedLaptop(std::string_view className) {
    std::vector<SensorService> found;
    const auto laptop = connect();
    if (!laptop) return found;
    std::uint8_t place = 0;
    for (const auto& service : laptop->services()) {
        if (service.className == className) {
            const auto setProperty = [laptop, place](std::string_view key, std::int32_t value) {
                laptop->writeProperty(place, key, value);
            };
            const auto open = [laptop, place] {
                auto reports = laptop->open(place);
                if (reports) lastOpened = laptop;
                return reports;
            };
            found.push_back({.properties = service.properties,
                             .setProperty = setProperty,
                             .open = open,
                             .description = "simulated laptop"});
        }
        ++place;
    }
    return found;
}

} // namespace quiverly
