#pragma once

#include <cmath>
#include <functional>
#include <vector>

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QTest>

#include "engine/Inspector.h"
#include "platform/hid.h"
#include "platform/virtual/VirtualPlatform.h"
#include "support/Reports.h"

namespace quiverly {

// A way in which the motion sensor cannot be opened, and what the engine says of it.
struct SensorFailure {
    const char* message;
    std::function<void(VirtualRegistry&)> cause;
};

inline const std::vector<SensorFailure> sensorFailures = {
    {"Could not query AppleSPUHIDDevice.", [](auto& registry) { registry.unbuildable = {"AppleSPUHIDDevice"}; }},
    {"No Apple Silicon accelerometer found.", [](auto& registry) { registry.unsearchable = {"AppleSPUHIDDevice"}; }},
    {"Accelerometer device missing on this Mac.", [](auto& registry) { registry.services.pop_back(); }},
    {"Failed to create HID device.", [](auto& registry) { registry.services.back().canBecomeDevice = false; }},
    {"Need Input Monitoring permission (System Settings → Privacy & Security). Code -536870174.",
     [](auto& registry) { registry.services.back().openResult = hid::notPermitted; }},
};

// A virtual laptop with a window system: what the window's tests act on. The motion sensor is there unless it is taken
// away.
class Stage {
public:
    VirtualPlatform platform;

    Stage() { connectSensor(); }

    void connectSensor() { platform.registry.connectAccelerometer(); }
    void removeSensor() { platform.registry.services = {VirtualService::driver()}; }

    // The sensor has that failure and no other.
    void breakSensor(const SensorFailure& failure) {
        platform.registry.unbuildable.clear();
        platform.registry.unsearchable.clear();
        connectSensor();
        failure.cause(platform.registry);
    }

    // Runs the jobs and events that wait, until none is left.
    void settle() {
        do platform.mainQueue.drain();
        while (QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents));
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    // Lets that much time pass, on the calendar and for delayed jobs. No timer of the window takes part in it.
    void pass(double seconds) {
        platform.calendar.advance(std::chrono::nanoseconds(std::llround(seconds * 1e9)));
        platform.mainQueue.advance(seconds);
        settle();
    }

    // One kept sample, as eight reports of the sensor.
    void sample(double x, double y, double z) {
        for (int count = 0; count < 8; ++count) platform.registry.deliver(report(x, y, z));
    }

    // The laptop lies still. To a detector that has never seen a sample the first one is a slap.
    void rest() {
        sample(0, 0, 1);
        settle();
    }

    // After a second at rest the laptop is hit so that the detector scores that amplitude.
    void hit(double amplitude) {
        pass(1.0);
        rest();
        sample(0, 0, 1 + amplitude);
        settle();
    }

    // A slap of that amplitude, as the detector of a listening engine reports it.
    void slap(BonkoEngine& engine, double amplitude) {
        Inspector::detector(engine).onSlap(amplitude);
        settle();
    }
};

} // namespace quiverly
