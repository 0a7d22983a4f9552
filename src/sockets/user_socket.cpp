#include "sockets/user_socket.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>

namespace quiverly {

std::optional<std::filesystem::path> runtimeFolder() {
    const char* runtime = std::getenv("XDG_RUNTIME_DIR"); // NOLINT(concurrency-mt-unsafe): main thread, never set here
    if (runtime == nullptr) return std::nullopt;
    std::filesystem::path folder = runtime;
    return folder.is_absolute() ? std::optional(std::move(folder)) : std::nullopt;
}

bool isPrivate(const std::filesystem::path& folder) {
    struct stat status = {};
    return ::lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == ::geteuid() &&
           (status.st_mode & 07777) == 0700;
}

SocketAddress SocketAddress::ofFile(const std::filesystem::path& file) {
    return SocketAddress(file.native());
}

SocketAddress::SocketAddress(std::string_view path)
    : size(static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + path.size())) {
    address.sun_family = AF_UNIX;
    std::ranges::copy(path, address.sun_path);
}

const sockaddr* SocketAddress::get() const {
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): the shape of the system's calls
    return reinterpret_cast<const sockaddr*>(&address);
}

FileDescriptor packetSocket() {
    return FileDescriptor(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

namespace {

std::optional<ucred> peerOf(int socket) {
    ucred peer = {};
    socklen_t size = sizeof peer;
    if (::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0) return std::nullopt;
    return peer;
}

} // namespace

bool peerIs(int socket, uid_t user) {
    const auto peer = peerOf(socket);
    return peer && peer->uid == user;
}

pid_t peerProcess(int socket) {
    const auto peer = peerOf(socket);
    return peer ? peer->pid : 0;
}

} // namespace quiverly
