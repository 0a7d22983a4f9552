#include "laptop/transport.h"

#include <sys/socket.h>
#include <sys/uio.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace quiverly::laptop {

namespace {

std::error_code lastError() {
    return {errno, std::generic_category()};
}

tl::expected<void, std::error_code> sendPacket(int socket, std::span<const std::uint8_t> packet) {
    if (::send(socket, packet.data(), packet.size(), MSG_DONTWAIT | MSG_NOSIGNAL) < 0) {
        return tl::unexpected(lastError());
    }
    return {};
}

// Takes the next packet. Its length, of which the parts hold what fits; nothing when there is none yet.
tl::expected<std::optional<std::size_t>, std::error_code> receivePacket(int socket, std::span<iovec> parts) {
    msghdr packet = {};
    packet.msg_iov = parts.data();
    packet.msg_iovlen = parts.size();
    const ssize_t length = ::recvmsg(socket, &packet, MSG_DONTWAIT | MSG_TRUNC);
    if (length > 0) return static_cast<std::size_t>(length);
    if (length == 0) return tl::unexpected(std::make_error_code(std::errc::connection_reset));
    if (errno == EAGAIN || errno == EWOULDBLOCK) return std::nullopt;
    return tl::unexpected(lastError());
}

} // namespace

bool endsConnection(const std::error_code& error) {
    return error == std::errc::connection_reset || error == std::errc::broken_pipe || error == std::errc::bad_message;
}

tl::expected<void, std::error_code> send(int socket, const Message& message) {
    return sendPacket(socket, encode(message));
}

tl::expected<void, std::error_code> sendReport(int socket, std::span<const std::uint8_t> report) {
    std::array<std::uint8_t, 1 + maximumReport> packet = {reportMark};
    const auto bytes = report.first(std::min(report.size(), maximumReport));
    std::ranges::copy(bytes, packet.begin() + 1);
    return sendPacket(socket, std::span(packet).first(1 + bytes.size()));
}

tl::expected<std::optional<Message>, std::error_code> receive(int socket) {
    std::array<std::uint8_t, maximumMessage> packet; // NOLINT: filled by the next call
    iovec whole{.iov_base = packet.data(), .iov_len = packet.size()};
    const auto length = receivePacket(socket, {&whole, 1});
    if (!length) return tl::unexpected(length.error());
    if (!*length) return std::nullopt;
    if (**length > packet.size()) return tl::unexpected(std::make_error_code(std::errc::bad_message));
    return decode(std::span(packet).first(**length));
}

tl::expected<std::optional<std::size_t>, std::error_code> receiveReport(int socket, std::span<std::uint8_t> buffer) {
    std::uint8_t mark = 0;
    std::array<iovec, 2> parts{
        {{.iov_base = &mark, .iov_len = 1}, {.iov_base = buffer.data(), .iov_len = buffer.size()}}};
    const auto length = receivePacket(socket, parts);
    if (!length || !*length) return length;
    return mark == reportMark ? std::optional(std::min(**length - 1, buffer.size())) : std::nullopt;
}

} // namespace quiverly::laptop
