#pragma once

#include <cmath>
#include <functional>
#include <vector>

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QTest>

#include "platform/hid.h"
#include "platform/virtual/VirtualPlatform.h"
#include "platform/virtual/sensor_report.h"

namespace quiverly {

// A reason why the motion sensor cannot be opened, and the message that the engine shows for it.
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

// A virtual laptop with a window system, for tests of the window. It has a motion sensor until that is taken away.
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

    // Runs the jobs and events that are waiting, until none is left.
    void settle() {
        do platform.mainQueue.drain();
        while (QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents));
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    // Lets that much time pass, on the calendar and for delayed jobs. The timers of widgets do not notice.
    void pass(double seconds) {
        platform.calendar.advance(std::chrono::nanoseconds(std::llround(seconds * 1e9)));
        platform.mainQueue.advance(seconds);
        settle();
    }

    // One kept sample, as eight reports of the sensor.
    void sample(double x, double y, double z) {
        for (int count = 0; count < 8; ++count) platform.registry.deliver(sensorReport(x, y, z));
    }

    // The laptop lies still. To a detector that has never seen a sample the first one is a slap of 1 g.
    void rest() {
        sample(0, 0, 1);
        settle();
    }

    // A second later, as the calendar has it, the resting laptop is hit so that the detector scores that amplitude. No
    // time passes for delayed jobs.
    void slap(double amplitude) {
        platform.calendar.advance(std::chrono::seconds(1));
        sample(0, 0, 1 + amplitude);
        sample(0, 0, 1);
        settle();
    }

    // Whether the program holds the sensor open, once its thread has had a turn.
    bool sensorIsOpen() {
        platform.threads.turn();
        return platform.registry.deviceIsOpen();
    }
};

} // namespace quiverly
