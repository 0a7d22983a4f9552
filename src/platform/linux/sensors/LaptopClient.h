#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <string_view>
#include <system_error>
#include <tuple>
#include <utility>
#include <vector>

#include <tl/expected.hpp>

#include "laptop/SocketPlace.h"
#include "laptop/protocol.h"
#include "sockets/FileDescriptor.h"

namespace quiverly {

// The reader's end of one connection to the simulated laptop. Main thread.
//
// What comes from the laptop is checked. The connection ends when the laptop breaks the rules, stays silent for a
// quarter of a second in all, or goes away; every later question fails at once.
class LaptopClient {
public:
    // Tells a socket from another one that took its place: device, inode, time of its last change.
    using SocketIdentity = std::tuple<dev_t, ino_t, time_t, long>;

    // Null when no laptop of this user answers. One that was silent is not asked again for a second, so
    // that a start, which asks several times, waits for it only once.
    static std::shared_ptr<LaptopClient> connect(const laptop::SocketPlace& place = laptop::SocketPlace::ofThisUser());

    // The same over a socket that is already connected to a laptop.
    static std::shared_ptr<LaptopClient> over(FileDescriptor socket, const SocketIdentity& identity);

    const std::vector<laptop::ServiceHello>& services() const { return hellos; }

    void writeProperty(std::uint8_t service, std::string_view key, std::int32_t value);

    // Where the reports come from now on. What is written afterwards, before they are read, reaches even a laptop
    // that is silent for too long, as soon as it reads again. A client opens one sensor.
    tl::expected<FileDescriptor, std::error_code> open(std::uint8_t service);

private:
    LaptopClient(FileDescriptor socket, const SocketIdentity& identity)
        : socket(std::move(socket)), identity(identity) {}

    bool receiveHellos();
    template<class Answer>
    tl::expected<void, std::error_code> ask(const laptop::Message& question);
    bool send(const laptop::Message& question);
    tl::expected<laptop::Message, std::error_code> await();
    tl::expected<laptop::Message, std::error_code> awaitUntil(std::chrono::steady_clock::time_point end);

    FileDescriptor socket; // none once the connection has ended
    bool isOpen = false;   // the sensor
    SocketIdentity identity;
    std::vector<laptop::ServiceHello> hellos;
    std::chrono::nanoseconds patience = std::chrono::milliseconds(250); // what is left of it
};

} // namespace quiverly
