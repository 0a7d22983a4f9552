#pragma once

#include <chrono>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "laptop/socket.h"
#include "platform/linux/sensors/sensor.h"
#include "sockets/FileDescriptor.h"

namespace quiverly {

// The reader's end of one connection to the simulated laptop, all of it on the main thread but readReport().
//
// Whatever comes from the other end is checked; what breaks the rules, stays silent for a quarter of a second in all,
// or goes away ends the connection for good, and every later question is answered at once with ENODEV.
class LaptopConnection {
public:
    // Null when no laptop of this user's answers. One that was silent is not asked again for a second, so that a start,
    // which asks several times, waits for it only once.
    static std::shared_ptr<LaptopConnection> connect(const laptop::SocketPlace& place = laptop::socketPlace());

    const std::vector<laptop::ServiceHello>& services() const { return hellos; }

    // 0 or an error number of the system (errno).
    int writeProperty(std::uint8_t service, std::string_view key, std::int32_t value);
    int open(std::uint8_t service);

    int descriptor() const { return socket.get(); }
    sensors::Reading readReport(std::span<std::uint8_t> buffer) const;

private:
    LaptopConnection(FileDescriptor socket, const laptop::SocketIdentity& identity)
        : socket(std::move(socket)), identity(identity) {}

    bool receiveHellos();
    template<class Answer>
    int ask(const laptop::Message& question);
    std::optional<laptop::Message> await();
    bool waitForInput();
    std::nullopt_t end();

    FileDescriptor socket;
    laptop::SocketIdentity identity;
    std::vector<laptop::ServiceHello> hellos;
    bool ended = false;
    std::chrono::nanoseconds patience = std::chrono::milliseconds(250); // what is left of it
};

} // namespace quiverly
