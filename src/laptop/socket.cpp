#include "laptop/socket.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string>

#include "sockets/user_socket.h"

namespace quiverly::laptop {

SocketPlace socketPlace(const std::filesystem::path& shared) {
    if (const auto runtime = runtimeFolder()) {
        SocketPlace place{.folder = *runtime};
        if (place.socket().native().size() <= SocketAddress::longest) return place;
    }
    return {.folder = shared / ("quiverly-" + std::to_string(::geteuid())), .isFallback = true};
}

std::optional<SocketIdentity> identityOf(const std::filesystem::path& socket) {
    struct stat status = {};
    if (::lstat(socket.c_str(), &status) != 0 || !S_ISSOCK(status.st_mode)) return std::nullopt;
    return SocketIdentity(status.st_dev, status.st_ino, status.st_ctim.tv_sec, status.st_ctim.tv_nsec);
}

bool send(int socket, const Message& message) {
    const auto packet = encode(message);
    ssize_t sent = 0;
    do {
        sent = ::send(socket, packet.data(), packet.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    } while (sent < 0 && errno == EINTR);
    return sent >= 0;
}

Incoming receive(int socket) {
    std::array<std::uint8_t, maximumMessage> packet; // NOLINT: filled by the next call
    ssize_t length = 0;
    do {
        length = ::recv(socket, packet.data(), packet.size(), MSG_DONTWAIT | MSG_TRUNC);
    } while (length < 0 && errno == EINTR);
    if (length < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) return {};
    if (length <= 0 || static_cast<std::size_t>(length) > packet.size()) return {.message = {}, .ended = true};

    auto message = decode(std::span(packet).first(static_cast<std::size_t>(length)));
    const bool unusable = !message;
    return {.message = std::move(message), .ended = unusable};
}

} // namespace quiverly::laptop
