#pragma once

#include <QApplication>
#include <QTest>

#include "Reports.h"
#include "platform/virtual/Inspector.h"
#include "platform/virtual/VirtualPlatform.h"

namespace quiverly {

// A virtual laptop with a window system: what the window's tests act on. The motion sensor is there unless it is taken
// away.
class Stage {
public:
    VirtualPlatform platform;

    Stage() { connectSensor(); }

    void connectSensor() { platform.registry.services = {VirtualService::driver(), VirtualService::accelerometer()}; }
    void removeSensor() { platform.registry.services = {VirtualService::driver()}; }

    // Runs the jobs and events that wait, until none is left.
    void settle() {
        platform.mainQueue.drain();
        QApplication::processEvents();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    // Lets that much time pass, on the calendar and for delayed jobs. No event of the window takes part in it.
    void pass(double seconds) {
        platform.calendar.advance(std::chrono::nanoseconds(std::llround(seconds * 1e9)));
        platform.mainQueue.advance(seconds);
        settle();
    }

    // A slap of that amplitude as the engine's detector reports it.
    void slap(BonkoEngine& engine, double amplitude) {
        Inspector::detector(engine).onSlap(amplitude);
        settle();
    }
};

} // namespace quiverly
