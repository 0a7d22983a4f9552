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

auto failure(const std::filesystem::path& path, const std::string& reason) {
    return tl::unexpected(path.string() + ": " + reason);
}

auto systemError(const std::filesystem::path& path) {
    return failure(path, std::generic_category().message(errno));
}

} // namespace

tl::expected<void, std::string> ListeningSocket::show() {
    if (socket) return {};
    return prepareFolder()
        .and_then([this] { return takeLock(); })
        .and_then([this] { return removeStale(); })
        .and_then([this] { return listen(); });
}

void ListeningSocket::hide() {
    if (!socket) return;
    ::unlink(path().c_str());
    socket.reset();
}

tl::expected<void, std::string> ListeningSocket::prepareFolder() const {
    if (!place.isFallback) return {};
    if (::mkdir(place.folder.c_str(), 0700) != 0 && errno != EEXIST) return systemError(place.folder);
    if (!isPrivate(place.folder)) return failure(place.folder, "is not a folder of this user's alone (mode 0700)");
    return {};
}

tl::expected<void, std::string> ListeningSocket::takeLock() {
    if (lock) return {};
    const auto file = place.folder / "quiverly-laptop.lock";
    FileDescriptor fresh(::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!fresh) return systemError(file);
    if (::flock(fresh.get(), LOCK_EX | LOCK_NB) != 0) {
        if (errno == EWOULDBLOCK) return failure(path(), "a simulated laptop is already running");
        return systemError(file);
    }
    lock = std::move(fresh);
    return {};
}

// Only a socket is taken away; anything else is not this program's.
tl::expected<void, std::string> ListeningSocket::removeStale() const {
    struct stat status = {};
    if (::lstat(path().c_str(), &status) != 0) {
        if (errno == ENOENT) return {};
        return systemError(path());
    }
    if (!S_ISSOCK(status.st_mode)) return failure(path(), "exists and is not a socket");
    if (::unlink(path().c_str()) != 0) return systemError(path());
    return {};
}

tl::expected<void, std::string> ListeningSocket::listen() {
    FileDescriptor fresh = packetSocket();
    const auto address = SocketAddress::ofFile(path());
    if (!fresh || ::bind(fresh.get(), address.get(), address.length()) != 0 || ::chmod(path().c_str(), 0600) != 0 ||
        ::listen(fresh.get(), SOMAXCONN) != 0) {
        return systemError(path());
    }
    socket = std::move(fresh);
    return {};
}

} // namespace quiverly
