#pragma once

#include <poll.h>

#include <cstdint>
#include <span>
#include <string>

#include "sockets/FileDescriptor.h"
#include "tools/simulate/WindowMessage.h"

namespace quiverly {

// What the laptop has to say to its window, on its way there through a pipe.
//
// No call waits for the window: what the pipe does not take is kept, and when that is too much, reports are dropped and
// counted, and the window is told how many. Reports go in lots, so that the window need not wake up for each.
class WindowOutput {
public:
    static constexpr std::size_t lot = 24;           // reports
    static constexpr std::size_t mostKept = 1 << 20; // bytes; reports of about 20 seconds

    // Takes over the end of the pipe that is written to.
    explicit WindowOutput(FileDescriptor pipe);

    void report(std::int64_t millisecond, std::span<const std::uint8_t> bytes); // at most 256 bytes
    void tell(const window::Message& message);                                  // at once, behind the reports so far

    // To wait for room in the pipe, where it did not take all; then call flush().
    pollfd room() const;
    void flush();

private:
    void keep(const window::Message& message);

    FileDescriptor pipe;
    std::string kept;
    std::size_t reportsKept = 0; // since the last attempt to write
    std::uint64_t dropped = 0;   // and not yet told
    bool isFull = false;         // the pipe, when it was last written to
};

} // namespace quiverly
