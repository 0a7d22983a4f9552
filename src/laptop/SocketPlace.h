#pragma once

#include <filesystem>

namespace quiverly::laptop {

// Where the socket of a simulated laptop is.
struct SocketPlace {
    std::filesystem::path folder;
    bool isFallback = false; // in a folder that every user may write to: use it only if isPrivate()

    // In $XDG_RUNTIME_DIR; where that is unset, relative or too long for the address of a socket, in a folder of the
    // user's own in `shared`.
    static SocketPlace ofThisUser(const std::filesystem::path& shared = "/tmp");

    std::filesystem::path socket() const { return folder / "quiverly-laptop.socket"; }
};

} // namespace quiverly::laptop
