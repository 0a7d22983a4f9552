#pragma once

#include <sys/types.h>

#include <filesystem>
#include <optional>
#include <tuple>

#include "laptop/protocol.h"

// The socket of the simulated laptop: where it is, and the messages that go through it.
namespace quiverly::laptop {

struct SocketPlace {
    std::filesystem::path folder;
    bool isFallback = false; // in a folder that everybody writes to: use it only if isPrivate()

    std::filesystem::path socket() const { return folder / "quiverly-laptop.socket"; }
};

// In $XDG_RUNTIME_DIR; where that is unset, relative or too long for the address of a socket, in a folder of the user's
// own in `shared`.
SocketPlace socketPlace(const std::filesystem::path& shared = "/tmp");

// Tells a socket from another one that took its place: device, inode, time of its last change.
using SocketIdentity = std::tuple<dev_t, ino_t, time_t, long>;
std::optional<SocketIdentity> identityOf(const std::filesystem::path& socket); // nothing when there is none

// Neither waits. send() tells whether the message is on its way; what a socket brings is a message, its end (also a
// packet that is no message, which nobody who keeps the rules sends), or nothing yet.
bool send(int socket, const Message& message);

struct Incoming {
    std::optional<Message> message;
    bool ended = false;
};
Incoming receive(int socket);

} // namespace quiverly::laptop
