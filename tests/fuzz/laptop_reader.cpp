// What a laptop may send to a reader: services, answers, reports, anything else.

#include <sys/socket.h>

#include <chrono>
#include <vector>

#include "fuzz/Packets.h"
#include "laptop/transport.h"
#include "platform/linux/sensors/LaptopClient.h"
#include "platform/linux/sensors/ReportReceiver.h"

using namespace quiverly;

namespace {

// A laptop that has said all that it ever says; what is asked of it is not read.
FileDescriptor laptopThatHasSaid(std::span<const std::uint8_t> input, FileDescriptor& laptop) {
    int ends[2];
    require(::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends) == 0);
    FileDescriptor reader(ends[0]);
    laptop = FileDescriptor(ends[1]);
    for (Packets packets(input); packets.hasMore();) {
        const auto packet = packets.take();
        // In a buffer of exactly its size; a hello may name a property twice.
        const auto message = laptop::decode(std::vector<std::uint8_t>(packet.begin(), packet.end()));
        require(!message || laptop::encode(*message).size() <= packet.size());
        ::send(laptop.get(), packet.data(), packet.size(), MSG_NOSIGNAL); // as many as the queue holds
    }
    require(::shutdown(laptop.get(), SHUT_WR) == 0);
    return reader;
}

void writeToAll(LaptopClient& client) {
    for (std::size_t service = 0; service < client.services().size(); ++service) {
        client.writeProperty(static_cast<std::uint8_t>(service), "ReportInterval", 1000);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    FileDescriptor laptop;
    FileDescriptor socket = laptopThatHasSaid({data + 1, size - 1}, laptop);
    const auto client = LaptopClient::over(std::move(socket), {});
    if (!client) return 0;
    require(client->services().size() <= laptop::maximumServices);
    if (data[0] % 2 != 0) writeToAll(*client);
    const auto reports = client->open(0);
    if (!reports) return 0;
    if (data[0] / 2 % 2 != 0) writeToAll(*client);
    ReportReceiver receiver(reports->get());
    auto received = receiver.receive(std::chrono::seconds(1)); // all that comes is there
    for (; received; received = receiver.receive(std::chrono::seconds(1))) {
        for (const auto report : *received) {
            const std::vector<std::uint8_t> copy(report.begin(), report.end()); // all of it can be read
            require(copy.size() <= laptop::maximumReport);
        }
    }
    require(laptop::endsConnection(received.error()));
    return 0;
}
