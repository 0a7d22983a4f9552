#include "tools/simulate/window/ApplicationDetector.h"

#include <array>
#include <chrono>

namespace quiverly {

namespace {
constexpr std::uint64_t decodedOf = 8; // reports; one in so many is decoded
}

ApplicationDetector::ApplicationDetector(VirtualPlatform& platform) : platform(platform) {
    platform.registry.connectAccelerometer();
    makeRoad();
}

void ApplicationDetector::setThreshold(double next) {
    threshold = next;
    road->detector.threshold = next;
}

void ApplicationDetector::begin(std::int64_t process) {
    if (process != reader) makeRoad();
    reader = process;
}

void ApplicationDetector::feel(std::int64_t millisecond, std::span<const std::uint8_t> report) {
    const std::chrono::milliseconds time(millisecond);
    seconds = std::chrono::duration<double>(time).count();
    platform.calendar.now = VirtualCalendar().now + time;
    platform.registry.deliver(report);
}

// An empty report is not decoded but counted.
void ApplicationDetector::miss(std::uint64_t reports) {
    constexpr std::array<std::uint8_t, 1> empty = {};
    for (std::uint64_t count = 0; count < reports % decodedOf; ++count) platform.registry.deliver(empty);
}

void ApplicationDetector::makeRoad() {
    road.reset();
    road.emplace();
    lastMagnitude = 0.0;
    road->detector.threshold = threshold;
    road->detector.onSlap = [this](double amplitude) {
        if (onSlap) onSlap(seconds, amplitude);
    };
    road->reader.onSample = [this](double x, double y, double z) { examine(x, y, z); };
    road->reader.start();
}

void ApplicationDetector::examine(double x, double y, double z) {
    SlapDetector& detector = road->detector;
    detector.process(x, y, z);
    const double magnitude = detector.magnitude();
    const double baseline = detector.runningBaseline();
    const Reading reading{.seconds = seconds,
                          .magnitude = magnitude,
                          .baseline = baseline,
                          .score = SlapDetector::score(magnitude, baseline, lastMagnitude),
                          .threshold = detector.threshold};
    lastMagnitude = magnitude;
    if (onReading) onReading(reading, detector.isCoolingDown(platform.calendar.now));
}

} // namespace quiverly
