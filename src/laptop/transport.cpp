#include "laptop/transport.h"

#include <sys/socket.h>

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
    const ssize_t length = ::recv(socket, packet.data(), packet.size(), MSG_DONTWAIT | MSG_TRUNC);
    if (length == 0) return tl::unexpected(std::make_error_code(std::errc::connection_reset));
    if (length < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) return std::nullopt;
    if (length < 0) return tl::unexpected(lastError());
    const auto size = static_cast<std::size_t>(length); // of the whole packet
    if (size > packet.size()) return tl::unexpected(std::make_error_code(std::errc::bad_message));
    return decode(std::span(packet).first(size));
}

} // namespace quiverly::laptop
