#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <system_error>

#include <tl/expected.hpp>

#include "laptop/protocol.h"

namespace quiverly {

// The services of the simulated laptop. Decides when its accelerometer reports.
//
// Among the accelerometer and its driver are services that a reader has to ignore. While no client has
// the accelerometer open, its driver sleeps and forgets what is written to it. When the first one has opened it, the
// accelerometer reports as soon as reporting state, power state and report interval have all been written, each above
// zero. Whatever interval is asked for, it reports every millisecond.
class LaptopRegistry {
public:
    // In the order in which the laptop names them.
    static std::span<const laptop::ServiceHello> services();

    // Their places in that list.
    static constexpr std::uint8_t driver = 1; // of the accelerometer
    static constexpr std::uint8_t accelerometer = 6;

    void accelerometerOpened() { ++opened; }
    void accelerometerClosed();

    // Errors: ENODEV for a service that does not exist, ENOTSUP for a property that the accelerometer's driver does not
    // have. Other services take anything.
    tl::expected<void, std::error_code> write(std::uint8_t service, const std::string& key, std::int32_t value);

    bool isReporting() const;

private:
    int opened = 0;                                 // by so many clients
    std::map<std::string, std::int32_t> properties; // what was written since the driver woke up
};

} // namespace quiverly
