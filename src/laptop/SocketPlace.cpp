#include "laptop/SocketPlace.h"

#include <unistd.h>

#include <string>

#include "sockets/user_socket.h"

namespace quiverly::laptop {

SocketPlace SocketPlace::ofThisUser(const std::filesystem::path& shared) {
    if (const auto runtime = runtimeFolder()) {
        SocketPlace place{.folder = *runtime};
        if (place.socket().native().size() <= SocketAddress::longest) return place;
    }
    return {.folder = shared / ("quiverly-" + std::to_string(::geteuid())), .isFallback = true};
}

} // namespace quiverly::laptop
