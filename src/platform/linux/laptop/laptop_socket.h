#pragma once

#include <sys/types.h>
#include <sys/un.h>

#include <filesystem>
#include <optional>
#include <tuple>

// Where the socket of the simulated laptop is, and whom both of its ends trust: the user they run as, nobody else.
namespace quiverly::laptop {

struct SocketPlace {
    std::filesystem::path folder;
    bool isFallback = false; // in a folder that everybody writes to: use it only if isPrivate()

    std::filesystem::path socket() const { return folder / "quiverly-laptop.socket"; }
};

// In $XDG_RUNTIME_DIR; where that is unset, relative or too long for the address of a socket, in a folder of the user's
// own under /tmp.
SocketPlace socketPlace();

// A folder itself, no link to one, which belongs to the user this program runs as and is open to nobody else.
bool isPrivate(const std::filesystem::path& folder);

// The path holds at most 107 bytes, as that of a SocketPlace does.
sockaddr_un socketAddress(const std::filesystem::path& path);

// Tells a socket from another one that took its place: device, inode, time of its last change.
using SocketIdentity = std::tuple<dev_t, ino_t, time_t, long>;
std::optional<SocketIdentity> identityOf(const std::filesystem::path& socket); // nothing when there is none

// Whether the program at the other end of a connected socket runs as that user.
bool peerIs(int socket, uid_t user);

} // namespace quiverly::laptop
