#pragma once

#include <poll.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "laptop/protocol.h"
#include "tools/simulate/ListeningSocket.h"
#include "tools/simulate/SensorDriver.h"

namespace quiverly {

// The simulated laptop's end of all connections: names its services, takes driver properties, opens the accelerometer,
// hands reports on.
//
// Never waits for a client. One that does not read loses reports, which are counted; one that breaks the rules or is
// another user's is disconnected. One thread.
class LaptopServer {
public:
    // Told what happens, a line each.
    explicit LaptopServer(std::function<void(const std::string& event)> say) : say(std::move(say)) {}

    std::optional<std::string> appear(); // nothing, or why the socket cannot be shown
    void vanish();
    std::string address() const { return listener.path().string(); }

    // What who asks to open the accelerometer from now on is answered: 0 or an error number of the system (errno).
    void setOpenError(int error) { openError = error; }

    // Whether somebody gets reports now.
    bool isReporting() const { return driver.isReporting(); }
    void report(std::span<const std::uint8_t> bytes); // at most 256

    // What to wait for, added to `inputs`, and what came of it: the same part of `inputs`, after the wait.
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
    void accept();
    void turnAway();
    void handle(Client& client);
    bool answer(Client& client, const laptop::Message& message);
    int writeProperty(const laptop::PropertyWrite& write);
    int open(Client& client, std::uint8_t service);
    void send(Client& client, std::span<const std::uint8_t> packet);
    void forgetGone();

    std::function<void(const std::string& event)> say;
    ListeningSocket listener;
    FileDescriptor spare = openSpare(); // lets a client in to turn it away when no descriptor is left
    SensorDriver driver;
    std::vector<Client> clients;
    int clientsSoFar = 0;
    int openError = 0;
};

} // namespace quiverly
