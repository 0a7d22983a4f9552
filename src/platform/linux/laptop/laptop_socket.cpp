#include "platform/linux/laptop/laptop_socket.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string>

namespace quiverly::laptop {

namespace {

constexpr std::size_t longestPath = sizeof(sockaddr_un{}.sun_path) - 1; // 107 bytes and the zero that ends them

} // namespace

SocketPlace socketPlace() {
    const char* runtime = std::getenv("XDG_RUNTIME_DIR"); // NOLINT(concurrency-mt-unsafe): main thread, never set here
    if (runtime != nullptr) {
        SocketPlace place{.folder = runtime};
        if (place.folder.is_absolute() && place.socket().native().size() <= longestPath) return place;
    }
    return {.folder = "/tmp/quiverly-" + std::to_string(::geteuid()), .isFallback = true};
}

bool isPrivate(const std::filesystem::path& folder) {
    struct stat status = {};
    return ::lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == ::geteuid() &&
           (status.st_mode & 07777) == 0700;
}

sockaddr_un socketAddress(const std::filesystem::path& path) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::ranges::copy(path.native(), address.sun_path);
    return address;
}

std::optional<SocketIdentity> identityOf(const std::filesystem::path& socket) {
    struct stat status = {};
    if (::lstat(socket.c_str(), &status) != 0 || !S_ISSOCK(status.st_mode)) return std::nullopt;
    return SocketIdentity(status.st_dev, status.st_ino, status.st_ctim.tv_sec, status.st_ctim.tv_nsec);
}

bool peerIs(int socket, uid_t user) {
    ucred peer = {};
    socklen_t size = sizeof peer;
    return ::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == user;
}

} // namespace quiverly::laptop
