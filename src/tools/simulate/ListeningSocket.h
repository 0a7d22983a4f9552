#pragma once

#include <filesystem>
#include <string>
#include <utility>

#include <tl/expected.hpp>

#include "laptop/SocketPlace.h"
#include "sockets/FileDescriptor.h"

namespace quiverly {

// The socket at which the simulated laptop is found. There is one laptop for each user: the first to show its socket
// keeps the place, with a lock beside it, as long as it runs. A socket that a dead one left behind is replaced.
class ListeningSocket {
public:
    explicit ListeningSocket(laptop::SocketPlace place = laptop::SocketPlace::ofThisUser()) : place(std::move(place)) {}
    ~ListeningSocket() { hide(); }
    ListeningSocket(const ListeningSocket&) = delete;
    ListeningSocket& operator=(const ListeningSocket&) = delete;

    // The error says why it cannot be shown.
    tl::expected<void, std::string> show();
    void hide();

    int descriptor() const { return socket.get(); } // -1 while hidden
    std::filesystem::path path() const { return place.socket(); }

private:
    tl::expected<void, std::string> prepareFolder() const;
    tl::expected<void, std::string> takeLock();
    tl::expected<void, std::string> removeStale() const;
    tl::expected<void, std::string> listen();

    laptop::SocketPlace place;
    FileDescriptor lock;
    FileDescriptor socket;
};

} // namespace quiverly
