#pragma once

namespace quiverly {

// What the first steps say of the sensor, in the order of the states.
inline constexpr char looking[] = "Looking for accelerometer…";
inline constexpr char detected[] = "Accelerometer detected";
inline constexpr char missing[] = "Accelerometer device missing on this Mac.";

} // namespace quiverly
