#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace quiverly {

// Decides when the accelerometer reports.
//
// It sleeps whenever nobody has the sensor open, and a sleeping driver forgets whatever it is told. So it reports only
// once reporting state, power state and report interval have all been written, each above zero, since the sensor was
// last opened with nobody else having it open. Whatever interval is asked for, it reports every millisecond.
class SensorDriver {
public:
    void deviceOpened() { ++openDevices; }
    void deviceClosed();

    // 0 or an error number of the system (errno): ENOTSUP for a property that the driver does not have.
    int write(const std::string& key, std::int32_t value);

    bool isReporting() const;

private:
    int openDevices = 0;
    std::map<std::string, std::int32_t> properties; // what was written since the driver woke up
};

} // namespace quiverly
