// What clients may send to the simulated laptop: questions, anything else, from two of them in any order.

#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "fuzz/Packets.h"
#include "laptop/SocketPlace.h"
#include "laptop/transport.h"
#include "sockets/user_socket.h"
#include "support/RuntimeFolder.h"
#include "tools/simulate/LaptopServer.h"

using namespace quiverly;

namespace {

// A laptop and its folder, for as long as the fuzzer lives.
class Laptop {
public:
    Laptop() { require(server.appear().has_value()); }

    // Handles all that has come in. How many clients there are then.
    std::size_t serve() {
        for (;;) {
            std::vector<pollfd> inputs;
            server.addInputs(inputs);
            if (::poll(inputs.data(), inputs.size(), 0) == 0) return inputs.size() - 1;
            server.handleInputs(inputs);
        }
    }

    RuntimeFolder folder;
    LaptopServer server{[](const std::string&) {}};
};

FileDescriptor connectedClient() {
    FileDescriptor client = packetSocket();
    const auto address = SocketAddress::ofFile(laptop::SocketPlace::ofThisUser().socket());
    require(::connect(client.get(), address.get(), address.length()) == 0);
    return client;
}

// Whatever the laptop says is a message.
void readAll(const FileDescriptor& client) {
    auto message = laptop::receive(client.get());
    while (message && *message) message = laptop::receive(client.get());
    require(message || message.error() != std::errc::bad_message);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Laptop laptop;
    std::array<FileDescriptor, 2> clients = {connectedClient(), connectedClient()};
    require(laptop.serve() == 2);
    for (Packets packets({data, size}); packets.hasMore();) {
        const auto packet = packets.take();
        if (packet.empty()) continue;
        const auto& client = clients.at(packet[0] % 2);
        ::send(client.get(), packet.data() + 1, packet.size() - 1, MSG_NOSIGNAL);
        laptop.serve();
        if (laptop.server.isReporting()) laptop.server.report(packet.first(std::min<std::size_t>(packet.size(), 256)));
        for (const auto& each : clients) readAll(each);
    }
    for (auto& client : clients) client.reset();
    require(laptop.serve() == 0);
    require(!laptop.server.isReporting());
    return 0;
}
