#pragma once

#include <string>
#include <string_view>
#include <variant>

#include <tl/expected.hpp>

#include "tools/simulate/Motion.h"

// The commands of the simulated laptop, one line each.
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
struct Bump {};   // of the table
struct Lid {};    // is shut and opened again
struct Lift {};   // picked up and put down again
struct Sleep {};  // stays connected, reports nothing
struct Wake {};   // reports again
struct Vanish {}; // the sensor is gone: connections end, the socket disappears
struct Appear {}; // and is back
struct Deny {};   // opening the sensor is not permitted from now on
struct Allow {};  // and is again
struct Quit {};

using Command =
    std::variant<Slap, Rest, Tilt, Type, Walk, Bump, Lid, Lift, Sleep, Wake, Vanish, Appear, Deny, Allow, Quit>;

// One line for each command, in the order of a manual.
extern const std::string_view help;

// What separates words. A line without words, or whose first word begins with '#', is a comment.
inline constexpr std::string_view blanks = " \t\r";
bool isRemark(std::string_view line);

// The error says what is wrong with the line.
tl::expected<Command, std::string> parse(std::string_view line);

} // namespace quiverly::command
