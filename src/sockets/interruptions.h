#pragma once

#include "sockets/FileDescriptor.h"

namespace quiverly {

// Makes the signals that ask a program to end (SIGINT, SIGTERM, SIGHUP) readable instead, in this thread and in those
// that begin afterwards. From now on a write to a closed pipe (SIGPIPE) or beyond a file's limit (SIGXFSZ) fails, and
// so does reading from the terminal in the background (SIGTTIN), instead of ending or stopping the program.
FileDescriptor interruptions();

} // namespace quiverly
