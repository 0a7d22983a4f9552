#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace quiverly {

// A sensor of this machine, and why it cannot be listened to.
struct SensorTrouble {
    enum class Cause { none, notPermitted, busy, failed, tooSlow, unsuitable };
    Cause cause = Cause::none; // none where nothing is wrong any more
    std::string sensor = {};
    std::string reason = {}; // a sentence
};

// What keeps Quiverly from listening to the simulated laptop and to the accelerometers below that /sys, in the order in
// which they are tried; empty where there is no sensor at all. Opens each that is offered, which takes less than 50 ms,
// and closes it again. Main thread.
std::vector<SensorTrouble> findSensorTroubles(const std::filesystem::path& sys);

// The page about access to the sensor, with what stands in the way on this machine at the place where the shipped one
// says "<!-- this machine -->".
std::string sensorPage(std::string_view shipped, const std::vector<SensorTrouble>& troubles);

} // namespace quiverly
