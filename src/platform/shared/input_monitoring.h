#pragma once

namespace quiverly {

// Address of the page of System Settings on which macOS lets its user grant Input Monitoring.
inline constexpr char inputMonitoringPage[] =
    "x-apple.systempreferences:com.apple.preference.security?Privacy_ListenEvent";

} // namespace quiverly
