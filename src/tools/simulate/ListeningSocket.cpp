#include "tools/simulate/ListeningSocket.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include <cerrno>
#include <system_error>

#include "sockets/user_socket.h"

namespace quiverly {

namespace {

std::string systemError(const std::filesystem::path& path) {
    return path.string() + ": " + std::generic_category().message(errno);
}

} // namespace

std::optional<std::string> ListeningSocket::show() {
    if (socket) return std::nullopt;
    if (auto error = prepareFolder()) return error;
    if (auto error = takeLock()) return error;
    if (auto error = removeStale()) return error;

    FileDescriptor fresh = packetSocket();
    const auto address = SocketAddress::ofFile(path());
    if (!fresh || ::bind(fresh.get(), address.get(), address.length()) != 0 || ::chmod(path().c_str(), 0600) != 0 ||
        ::listen(fresh.get(), SOMAXCONN) != 0) {
        return systemError(path());
    }
    socket = std::move(fresh);
    return std::nullopt;
}

void ListeningSocket::hide() {
    if (!socket) return;
    ::unlink(path().c_str());
    socket.reset();
}

std::optional<std::string> ListeningSocket::prepareFolder() const {
    if (!place.isFallback) return std::nullopt;
    if (::mkdir(place.folder.c_str(), 0700) != 0 && errno != EEXIST) return systemError(place.folder);
    if (isPrivate(place.folder)) return std::nullopt;
    return place.folder.string() + ": is not a folder of this user's alone (mode 0700)";
}

std::optional<std::string> ListeningSocket::takeLock() {
    if (lock) return std::nullopt;
    const auto file = place.folder / "quiverly-laptop.lock";
    FileDescriptor fresh(::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!fresh) return systemError(file);
    if (::flock(fresh.get(), LOCK_EX | LOCK_NB) != 0) {
        return errno == EWOULDBLOCK ? path().string() + ": a simulated laptop runs already" : systemError(file);
    }
    lock = std::move(fresh);
    return std::nullopt;
}

// Only a socket is taken away; anything else is not this program's.
std::optional<std::string> ListeningSocket::removeStale() const {
    struct stat status = {};
    if (::lstat(path().c_str(), &status) != 0) {
        return errno == ENOENT ? std::nullopt : std::optional(systemError(path()));
    }
    if (!S_ISSOCK(status.st_mode)) return path().string() + ": is in the way and is no socket";
    if (::unlink(path().c_str()) != 0) return systemError(path());
    return std::nullopt;
}

} // namespace quiverly
