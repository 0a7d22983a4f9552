#pragma once

#include <sys/types.h>

#include <array>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quiverly {

// An accelerometer that a driver of Linux offers in the Industrial I/O folder of /sys.
struct Accelerometer {
    // Why it is of no use to Quiverly.
    struct Refusal {
        enum class Kind { incomplete, tooSlow, tooCoarse, notPermitted };
        Kind kind;
        std::string because; // the rest of a sentence that begins with its name
    };

    // Differs between two devices that have the same folder one after the other.
    using Identity = std::pair<dev_t, ino_t>;

    std::filesystem::path folder; // iio:device0 and the like
    Identity identity = {};
    std::string name;                  // as the driver says; may be empty
    std::string driver;                // may be empty
    std::string place;                 // in the machine, such as "accel-base"; mostly empty
    std::array<double, 3> scale = {};  // of x, y, z, in m/s^2 a step
    std::array<double, 3> offset = {}; // in steps
    std::optional<double> statedRate;  // readings a second, as the driver says; nothing where that is not to be trusted
    std::optional<Refusal> refusal;

    // The file that holds the acceleration along that axis, in steps; 0 is x.
    std::filesystem::path rawFile(std::size_t axis) const;

    // Name, driver, scale, stated rate, in one line.
    std::string inWords() const;
};

// All accelerometers below that /sys, those of use first, and of those one in the machine's base before one in its lid.
// Reads nothing that a sensor hub would have to be asked for, which may take seconds.
std::vector<Accelerometer> findAccelerometers(const std::filesystem::path& sys);

// /sys, or the folder that $QUIVERLY_SYS names for tests.
std::filesystem::path systemFolder();

} // namespace quiverly
