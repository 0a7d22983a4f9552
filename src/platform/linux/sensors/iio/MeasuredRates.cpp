#include "platform/linux/sensors/iio/MeasuredRates.h"

namespace quiverly {

std::shared_ptr<MeasuredRates> MeasuredRates::ofThisProgram() {
    static const auto rates = std::make_shared<MeasuredRates>();
    return rates;
}

void MeasuredRates::remember(const Accelerometer::Identity& sensor, double perSecond) {
    const std::lock_guard lock(mutex);
    rates[sensor] = perSecond;
}

std::optional<double> MeasuredRates::of(const Accelerometer::Identity& sensor) const {
    const std::lock_guard lock(mutex);
    const auto found = rates.find(sensor);
    return found != rates.end() ? std::optional(found->second) : std::nullopt;
}

} // namespace quiverly
