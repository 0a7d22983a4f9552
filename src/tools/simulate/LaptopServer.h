#pragma once

#include <poll.h>

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <system_error>
#include <vector>

#include <tl/expected.hpp>

#include "laptop/protocol.h"
#include "tools/simulate/LaptopRegistry.h"
#include "tools/simulate/ListeningSocket.h"

namespace quiverly {

// The laptop's end of all connections: names the services, takes driver properties, opens the accelerometer, sends its
// reports.
//
// Never waits for a client. One that does not read loses reports, which are counted; one that breaks the rules or is
// another user's is disconnected. After a call of the system that failed it rests for a millisecond. One thread.
class LaptopServer {
public:
    // `say` is called with what happens, a line each.
    explicit LaptopServer(std::function<void(const std::string& event)> say) : say(std::move(say)) {}

    // Shows the socket. The error says why it cannot be shown.
    tl::expected<void, std::string> appear();
    void vanish();
    std::string address() const { return listener.path().string(); }

    // Whether clients may open the accelerometer from now on.
    void permit(bool permitted) { isPermitted = permitted; }

    bool isReporting() const { return registry.isReporting(); }
    void report(std::span<const std::uint8_t> bytes); // to all who have the accelerometer open; at most 256 bytes

    // The process of the client that has had the accelerometer open for longest; 0 when there is none, or none is
    // known.
    std::int64_t reader() const;

    // Adds what to wait for to `inputs`; after the wait, the same part of `inputs` is handled.
    void addInputs(std::vector<pollfd>& inputs) const;
    void handleInputs(std::span<const pollfd> inputs);

private:
    struct Client {
        FileDescriptor socket;
        int number = 0; // in the order in which they came
        bool hasOpened = false;
        bool gone = false;
        std::uint64_t sent = 0;
        std::uint64_t dropped = 0;
    };

    static FileDescriptor openSpare();
    bool accept();
    bool turnAway();
    bool handle(Client& client);
    bool answer(Client& client, const laptop::Message& message);
    tl::expected<void, std::error_code> writeProperty(const laptop::PropertyWrite& write);
    tl::expected<void, std::error_code> open(Client& client, std::uint8_t service);
    static void sendReport(Client& client, std::span<const std::uint8_t> bytes);
    void forgetGone();

    std::function<void(const std::string& event)> say;
    ListeningSocket listener;
    FileDescriptor spare = openSpare(); // lets a client in to turn it away when no descriptor is left
    LaptopRegistry registry;
    std::vector<Client> clients;
    int clientsSoFar = 0;
    bool isPermitted = true;
};

} // namespace quiverly
