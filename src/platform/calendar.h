#pragma once

#include <chrono>

// The calendar clock: the one that people set, not a monotonic one.
namespace quiverly::calendar {

using TimePoint = std::chrono::sys_time<std::chrono::nanoseconds>;

// Any thread.
TimePoint now();

// Long before every real reading (August 1963), and near enough that a difference to any reading up to the year 2255
// fits 64 bits of nanoseconds.
inline constexpr TimePoint distantPast{std::chrono::seconds{-200'000'000}};

// Seconds from one moment to another; negative when `to` is the earlier one.
inline double elapsed(TimePoint from, TimePoint to) {
    return static_cast<double>((to - from).count()) / 1e9;
}

} // namespace quiverly::calendar
