#pragma once

#include <array>
#include <system_error>

#include <tl/expected.hpp>

#include "platform/linux/sensors/iio/Accelerometer.h"
#include "platform/linux/sensors/iio/units.h"
#include "sockets/FileDescriptor.h"

namespace quiverly {

// The open files of an accelerometer from which its values are read. Errors are the system's own (errno).
class AxisFiles {
public:
    // Opens the files and reads nothing, so that it does not wait.
    static tl::expected<AxisFiles, std::error_code> open(const Accelerometer& accelerometer);

    // Asks the driver for the three axes, one after the other, which may take seconds. The error bad_message for what
    // is not a number, or more than a report can hold.
    tl::expected<Acceleration3, std::error_code> read() const;

private:
    struct Axis {
        FileDescriptor file;
        double offset = 0.0; // steps
        double scale = 0.0;  // g a step
    };

    static tl::expected<double, std::error_code> read(const Axis& axis); // g

    std::array<Axis, 3> axes;
};

} // namespace quiverly
