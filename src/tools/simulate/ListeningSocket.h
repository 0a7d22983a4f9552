#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <utility>

#include "laptop/socket.h"
#include "sockets/FileDescriptor.h"

namespace quiverly {

// The socket under which the simulated laptop is found. There is one laptop for each user: the first to show its
// socket keeps the place, with a lock beside it, for as long as it lives. A socket that a dead one left is replaced.
class ListeningSocket {
public:
    explicit ListeningSocket(laptop::SocketPlace place = laptop::socketPlace()) : place(std::move(place)) {}
    ~ListeningSocket() { hide(); }
    ListeningSocket(const ListeningSocket&) = delete;
    ListeningSocket& operator=(const ListeningSocket&) = delete;

    // Nothing, or why it cannot be shown.
    std::optional<std::string> show();
    void hide();

    int descriptor() const { return socket.get(); } // -1 while hidden
    std::filesystem::path path() const { return place.socket(); }

private:
    std::optional<std::string> prepareFolder() const;
    std::optional<std::string> takeLock();
    std::optional<std::string> removeStale() const;

    laptop::SocketPlace place;
    FileDescriptor lock;
    FileDescriptor socket;
};

} // namespace quiverly
