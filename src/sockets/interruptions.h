#pragma once

#include <array>
#include <csignal>

#include "sockets/FileDescriptor.h"

namespace quiverly {

// Of a write to a closed pipe, of reading from the terminal in the background, of a write beyond a file's limit. What
// would have ended or stopped the program fails instead.
inline constexpr std::array ignoredSignals = {SIGPIPE, SIGTTIN, SIGXFSZ};

// Makes the signals that ask a program to end (SIGINT, SIGTERM, SIGHUP) readable instead, in this thread and in those
// that begin afterwards, and ignores `ignoredSignals`.
FileDescriptor interruptions();

} // namespace quiverly
