#pragma once

#include <chrono>

#include "platform/calendar.h"

namespace quiverly {

// The calendar clock of the virtual platform. It stands still until it is set; any thread reads it only while nobody
// sets it.
class VirtualCalendar {
public:
    calendar::TimePoint now{std::chrono::seconds{1'700'000'000}}; // November 2023

    void advance(std::chrono::nanoseconds time) { now += time; }
};

} // namespace quiverly
