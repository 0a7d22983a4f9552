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
    ssize_t sent = 0;
    do {
        sent = ::send(socket, packet.data(), packet.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    } while (sent < 0 && errno == EINTR);
    if (sent < 0) return tl::unexpected(lastError());
    return {};
}

// What a call that takes in a packet has answered: the packet's length, or nothing when there is none yet.
tl::expected<std::optional<std::size_t>, std::error_code> lengthOf(ssize_t received) {
    if (received > 0) return static_cast<std::size_t>(received);
    if (received == 0) return tl::unexpected(std::make_error_code(std::errc::connection_reset));
    if (errno == EAGAIN || errno == EWOULDBLOCK) return std::nullopt;
    return tl::unexpected(lastError());
}

} // namespace

tl::expected<void, std::error_code> send(int socket, const Message& message) {
    return sendPacket(socket, encode(message));
}

tl::expected<void, std::error_code> sendReport(int socket, std::span<const std::uint8_t> report) {
    std::array<std::uint8_t, 1 + maximumReport> packet = {reportMark};
    std::ranges::copy(report.first(std::min(report.size(), maximumReport)), packet.begin() + 1);
    return sendPacket(socket, std::span(packet).first(1 + std::min(report.size(), maximumReport)));
}

tl::expected<std::optional<Message>, std::error_code> receive(int socket) {
    std::array<std::uint8_t, maximumMessage> packet; // NOLINT: filled by the next call
    ssize_t received = 0;
    do {
        received = ::recv(socket, packet.data(), packet.size(), MSG_DONTWAIT | MSG_TRUNC);
    } while (received < 0 && errno == EINTR);
    const auto length = lengthOf(received);
    if (!length) return tl::unexpected(length.error());
    if (!*length) return std::nullopt;
    if (**length > packet.size()) return tl::unexpected(std::make_error_code(std::errc::bad_message));
    return decode(std::span(packet).first(**length));
}

tl::expected<std::optional<std::size_t>, std::error_code> receiveReport(int socket, std::span<std::uint8_t> buffer) {
    std::uint8_t mark = 0;
    std::array<iovec, 2> parts{
        {{.iov_base = &mark, .iov_len = 1}, {.iov_base = buffer.data(), .iov_len = buffer.size()}}};
    msghdr packet = {};
    packet.msg_iov = parts.data();
    packet.msg_iovlen = parts.size();
    const auto length = lengthOf(::recvmsg(socket, &packet, MSG_DONTWAIT));
    if (!length || !*length) return length;
    return mark == reportMark ? std::optional(**length - 1) : std::nullopt;
}

} // namespace quiverly::laptop
