#pragma once

#include <sys/socket.h>
#include <sys/uio.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <span>
#include <system_error>

#include <tl/expected.hpp>

#include "laptop/protocol.h"

namespace quiverly {

// Waits for the reports of a sensor and takes all that have come, with one system call. From now on calls that may wait
// do so at this socket, unless they are told not to.
class ReportReceiver {
public:
    using Reports = std::span<const std::span<const std::uint8_t>>;

    explicit ReportReceiver(int socket);
    ReportReceiver(const ReportReceiver&) = delete;
    ReportReceiver& operator=(const ReportReceiver&) = delete;

    // The reports that wait, or else come within that time (up to some milliseconds more), valid until the next call;
    // none when nothing came but what is not a report. The error connection_reset when the other end has closed the
    // connection; any other one is the system's own.
    tl::expected<Reports, std::error_code> receive(std::chrono::nanoseconds longest);

private:
    static constexpr unsigned most = 16; // in one go: two samples

    using Packet = std::array<std::uint8_t, 1 + laptop::maximumReport>; // with its mark

    std::error_code limitWaiting(std::chrono::nanoseconds longest);

    int socket;
    std::chrono::nanoseconds limit{-1}; // of waiting; at first there is none
    std::array<Packet, most> packets = {};
    std::array<iovec, most> parts = {};
    std::array<mmsghdr, most> messages = {};
    std::array<std::span<const std::uint8_t>, most> reports = {};
};

} // namespace quiverly
