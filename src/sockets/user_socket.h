#pragma once

#include <sys/socket.h>
#include <sys/types.h>
#include <sys/un.h>

#include <filesystem>
#include <optional>
#include <string_view>

#include "sockets/FileDescriptor.h"

// What the sockets have in common over which programs of one user talk to each other: Unix-domain sockets that keep
// packets apart, and both ends trust the user they run as, nobody else.
namespace quiverly {

// $XDG_RUNTIME_DIR; nothing where that is unset or relative.
std::optional<std::filesystem::path> runtimeFolder();

// A folder itself, no link to one, which belongs to the user this program runs as and is open to nobody else.
bool isPrivate(const std::filesystem::path& folder);

// Where a socket is: a file, or a name that no file marks and that does not outlive the sockets bound to it. Either
// has at most 107 bytes.
class SocketAddress {
public:
    static constexpr std::size_t longest = sizeof(sockaddr_un{}.sun_path) - 1;

    static SocketAddress ofFile(const std::filesystem::path& file);
    static SocketAddress ofName(std::string_view name);

    const sockaddr* get() const;
    socklen_t length() const { return size; }

private:
    SocketAddress(std::string_view text, std::size_t offset);

    sockaddr_un address = {};
    socklen_t size;
};

// A new socket, whose calls never wait; none when the system has none to give.
FileDescriptor packetSocket();

// Whether the program at the other end of a connected socket runs as that user.
bool peerIs(int socket, uid_t user);

} // namespace quiverly
