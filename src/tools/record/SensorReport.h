#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/sensors/iio/Accelerometer.h"

namespace quiverly {

// An accelerometer of the machine, and what came of reading it for a while.
struct TriedSensor {
    Accelerometer sensor;
    int readings = 0;
    int different = 0;                        // of these
    double seconds = 0.0;                     // for which it was read
    std::optional<double> differentRate = {}; // a second while it was moved; nothing where it lay still
    std::string error = {};                   // why it could not be read

    bool isOffered() const;
    std::string verdict() const; // whether it is offered, and if not, why not
};

// Reads every accelerometer below that /sys, one after the other, each for that long.
std::vector<TriedSensor> trySensors(const std::filesystem::path& sys, std::chrono::milliseconds each);

std::string asText(const std::vector<TriedSensor>& sensors, bool isSimulated);
std::string asJson(const std::vector<TriedSensor>& sensors, bool isSimulated);

// The system's name and release, such as "Linux 6.1.0".
std::string kernel();

} // namespace quiverly
