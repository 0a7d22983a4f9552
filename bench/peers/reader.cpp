// The least that it takes to listen to a simulated laptop: a bare loop of poll and recv.
//
// Prints how many reports it got, once for each line of standard input, and ends with it.

#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <cstdint>
#include <iostream>
#include <optional>
#include <string>

#include "laptop/SocketPlace.h"
#include "laptop/transport.h"
#include "sockets/input.h"
#include "sockets/user_socket.h"
#include "tools/simulate/LaptopRegistry.h"

namespace quiverly {
namespace {

constexpr std::chrono::seconds patience{10};

std::optional<laptop::Message> answer(int socket) {
    pollfd input = inputOf(socket);
    if (!waitForInput({&input, 1}, patience)) return std::nullopt;
    const auto message = laptop::receive(socket);
    return message ? *message : std::nullopt;
}

bool open(int socket) {
    const auto address = SocketAddress::ofFile(laptop::SocketPlace::ofThisUser().socket());
    if (::connect(socket, address.get(), address.length()) != 0) return false;
    auto message = answer(socket);
    while (message && !std::holds_alternative<laptop::EndOfServices>(*message)) message = answer(socket);
    const bool asked = message && laptop::send(socket, laptop::OpenRequest{LaptopRegistry::accelerometer}).has_value();
    for (const char* key : {"SensorPropertyReportingState", "SensorPropertyPowerState", "ReportInterval"}) {
        if (!asked || !laptop::send(socket, laptop::PropertyWrite{LaptopRegistry::driver, key, 1000})) return false;
    }
    return asked;
}

int run() {
    const FileDescriptor socket = packetSocket();
    if (!open(socket.get())) return 1;
    std::cout << "ready" << std::endl;
    std::array<pollfd, 2> inputs = {inputOf(socket.get()), inputOf(STDIN_FILENO)};
    std::array<std::uint8_t, 256> report{};
    std::uint64_t reports = 0;
    while (true) {
        ::poll(inputs.data(), inputs.size(), -1);
        if (inputs[0].revents != 0) {
            if (::recv(socket.get(), report.data(), report.size(), MSG_DONTWAIT) == 0) return 0;
            ++reports;
        }
        if (inputs[1].revents != 0) {
            if (::read(STDIN_FILENO, report.data(), report.size()) <= 0) return 0;
            std::cout << "reports " << reports << std::endl;
        }
    }
}

} // namespace
} // namespace quiverly

int main() {
    return quiverly::run();
}
