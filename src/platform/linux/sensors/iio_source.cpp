#include "platform/linux/sensors/iio_source.h"

#include <cstdint>
#include <string>
#include <utility>

#include "platform/linux/sensors/iio/Accelerometer.h"
#include "platform/linux/sensors/iio/Poller.h"

namespace quiverly {

namespace {

constexpr int reportsPerReading = 8; // the reader decodes one in eight

// As the motion sensor of the original laptop is known.
const SensorService::Properties motionSensor = {{"PrimaryUsagePage", std::int64_t{0xFF00}},
                                                {"PrimaryUsage", std::int64_t{3}}};

bool isOffered(const Accelerometer& accelerometer) {
    return !accelerometer.refusal || accelerometer.refusal->kind == Accelerometer::Refusal::Kind::notPermitted;
}

} // namespace

std::vector<SensorService> findIioSensors(std::string_view className, const std::filesystem::path& sys) {
    std::vector<SensorService> found;
    if (className != "AppleSPUHIDDevice") return found;
    for (const auto& accelerometer : findAccelerometers(sys)) {
        if (!isOffered(accelerometer)) continue;
        found.push_back({.properties = motionSensor,
                         .setProperty = [](std::string_view, std::int32_t) {}, // it needs no waking
                         .open = [accelerometer] { return Poller::open(accelerometer); },
                         .description = accelerometer.inWords(),
                         .reportsPerPacket = reportsPerReading});
    }
    return found;
}

} // namespace quiverly
