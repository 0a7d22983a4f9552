#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <variant>

#include "tools/simulate/Motion.h"

// What the simulated laptop can be told, one line for each command.
namespace quiverly::command {

struct Slap {
    Blow blow;
};
struct Rest {};
struct Tilt {
    Acceleration up;
};
struct Type {};
struct Walk {};
struct Sleep {};  // stays connected, reports nothing
struct Wake {};   // reports again
struct Vanish {}; // the sensor is gone: connections end, the socket disappears
struct Appear {}; // and is back
struct Deny {};   // who asks to open the sensor from now on is not permitted to
struct Allow {};
struct Quit {};

using Command = std::variant<Slap, Rest, Tilt, Type, Walk, Sleep, Wake, Vanish, Appear, Deny, Allow, Quit>;

// Why a line is no command, for the eyes of who wrote it.
struct Mistake {
    std::string text;
};

// One for each command, in the order of a manual.
extern const std::string_view help;

// Words are separated by blanks (space, tab). A line without words, or whose first one begins with '#', says nothing.
bool saysNothing(std::string_view line);
std::variant<Command, Mistake> parse(std::string_view line);

// A command behind the time at which it is due, in seconds: "2.5 slap 0.6".
struct Timed {
    std::chrono::milliseconds due;
    Command command;
    std::string text; // the whole line
};
std::variant<Timed, Mistake> parseTimed(std::string_view line);

} // namespace quiverly::command
