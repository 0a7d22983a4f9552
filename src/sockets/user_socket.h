#pragma once

#include <sys/socket.h>
#include <sys/types.h>
#include <sys/un.h>

#include <filesystem>
#include <optional>
#include <string_view>

#include "sockets/FileDescriptor.h"

// Sockets over which programs of one user talk to each other: Unix-domain sockets that keep packets apart. Each end
// trusts the user it runs as, and no other.
namespace quiverly {

// $XDG_RUNTIME_DIR; nothing where that is unset or relative.
std::optional<std::filesystem::path> runtimeFolder();

// Whether it is a folder, not a link to one, that belongs to the user this program runs as and is open to no other.
bool isPrivate(const std::filesystem::path& folder);

// The address of a socket: a file, whose path has at most 107 bytes.
class SocketAddress {
public:
    static constexpr std::size_t longest = sizeof(sockaddr_un{}.sun_path) - 1;

    static SocketAddress ofFile(const std::filesystem::path& file);

    const sockaddr* get() const;
    socklen_t length() const { return size; }

private:
    explicit SocketAddress(std::string_view path);

    sockaddr_un address = {};
    socklen_t size;
};

// A new socket, whose calls never wait; none, and errno says why, when the system refuses one.
FileDescriptor packetSocket();

// Whether the program at the other end of a connected socket runs as that user.
bool peerIs(int socket, uid_t user);

// That program's process; 0 where it is not known, as from inside a container.
pid_t peerProcess(int socket);

} // namespace quiverly
