#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <variant>

#include "platform/calendar.h"
#include "sound/SoundPack.h"

namespace quiverly {

// How the registry answers a search for the sensor: as it should, or failing at one of the steps of opening it.
enum class SensorAnswer { ok, noQuery, noLookup, missing, noDevice, denied };

// What a line of a recording does.
namespace action {

struct Report {
    static constexpr std::size_t longest = 256; // bytes
    std::span<const std::uint8_t> bytes;        // valid until the next line is parsed
};
struct Start {};
struct Stop {};
struct Sound {
    bool on;
};
struct Pack {
    SoundPack pack;
};
struct Threshold {
    double value; // g
};
struct BeginCheck {};
struct EndCheck {};
struct ClockJump {};
struct Sensor {
    SensorAnswer answer;
};

} // namespace action

using Action = std::variant<action::Report, action::Start, action::Stop, action::Sound, action::Pack, action::Threshold,
                            action::BeginCheck, action::EndCheck, action::ClockJump, action::Sensor>;

// One line of a recording, understood.
struct RecordingLine {
    double seconds = 0.0;              // the double nearest to the line's time
    calendar::TimePoint calendar = {}; // what the calendar clock reads then, this line's own jump included
    Action action = {};
};

} // namespace quiverly
