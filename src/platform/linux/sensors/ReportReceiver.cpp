#include "platform/linux/sensors/ReportReceiver.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>

namespace quiverly {

namespace {

std::error_code systemError() {
    return {errno, std::generic_category()};
}

} // namespace

ReportReceiver::ReportReceiver(int socket) : socket(socket) {
    for (std::size_t index = 0; index < most; ++index) {
        parts[index] = {.iov_base = packets[index].data(), .iov_len = packets[index].size()};
        messages[index].msg_hdr.msg_iov = &parts[index];
        messages[index].msg_hdr.msg_iovlen = 1;
    }
}

tl::expected<ReportReceiver::Reports, std::error_code> ReportReceiver::receive(std::chrono::nanoseconds longest) {
    if (const auto error = limitWaiting(longest)) return tl::unexpected(error);
    const int received = ::recvmmsg(socket, messages.data(), most, MSG_WAITFORONE, nullptr);
    if (received < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) return Reports();
    if (received < 0) return tl::unexpected(systemError());
    if (messages[0].msg_len == 0) return tl::unexpected(std::make_error_code(std::errc::connection_reset));
    std::size_t count = 0;
    for (std::size_t index = 0; index < static_cast<std::size_t>(received) && messages[index].msg_len > 0; ++index) {
        const auto packet = std::span(packets[index]).first(messages[index].msg_len);
        if (packet.front() == laptop::reportMark) reports[count++] = packet.subspan(1);
    }
    return std::span(reports).first(count);
}

// The limit comes first: without one a wait might be endless.
std::error_code ReportReceiver::limitWaiting(std::chrono::nanoseconds longest) {
    using std::chrono::microseconds;
    if (longest == limit) return {};
    const auto time = std::max(std::chrono::ceil<microseconds>(longest), microseconds(1)); // 0 is no limit
    const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
    const timeval limited{.tv_sec = seconds.count(), .tv_usec = (time - seconds).count()};
    if (::setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &limited, sizeof limited) != 0) return systemError();
    const int flags = ::fcntl(socket, F_GETFL);
    if (flags < 0 || ::fcntl(socket, F_SETFL, flags & ~O_NONBLOCK) != 0) return systemError();
    limit = longest;
    return {};
}

} // namespace quiverly
