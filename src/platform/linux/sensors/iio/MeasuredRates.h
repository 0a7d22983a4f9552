#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <optional>

#include "platform/linux/sensors/iio/Accelerometer.h"

namespace quiverly {

// How fast sensors turned out to be, in different readings a second. Any thread.
class MeasuredRates {
public:
    // Remembers as long as the program runs. Whoever uses it on another thread than the main thread keeps the pointer.
    static std::shared_ptr<MeasuredRates> ofThisProgram();

    void remember(const Accelerometer::Identity& sensor, double perSecond);

    // Nothing for a sensor that has not been moved enough.
    std::optional<double> of(const Accelerometer::Identity& sensor) const;

private:
    mutable std::mutex mutex;
    std::map<Accelerometer::Identity, double> rates;
};

} // namespace quiverly
