#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <system_error>

#include <tl/expected.hpp>

#include "laptop/protocol.h"

// Messages and reports over the connected socket of a simulated laptop. Nothing here waits. Errors are the system's own
// (errno) unless another one is named.
namespace quiverly::laptop {

// Whether that error of one of the calls below is the end of the connection. After any other the call may be tried
// again.
bool endsConnection(const std::error_code& error);

tl::expected<void, std::error_code> send(int socket, const Message& message);

// A report has at most maximumReport bytes.
tl::expected<void, std::error_code> sendReport(int socket, std::span<const std::uint8_t> report);

// The next message; nothing when there is none yet. The error connection_reset when the other end has closed the
// connection, bad_message for a packet that is not a message.
tl::expected<std::optional<Message>, std::error_code> receive(int socket);

} // namespace quiverly::laptop
