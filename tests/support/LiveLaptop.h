#pragma once

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <thread>

#include "sockets/FileDescriptor.h"
#include "support/RuntimeFolder.h"
#include "tools/simulate/Simulator.h"

namespace quiverly {

// The simulated laptop on a thread of this program.
class LiveLaptop {
public:
    explicit LiveLaptop(Simulator::Options options = {}) : simulator(std::move(options), output, errors) {
        int ends[2];
        if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) std::abort();
        commands = FileDescriptor(ends[0]);
        input = FileDescriptor(ends[1]);
        EXPECT_TRUE(simulator.open());
        thread = std::thread([this] { EXPECT_TRUE(simulator.run(input.get(), -1)); });
    }
    ~LiveLaptop() { quit(); }
    LiveLaptop(const LiveLaptop&) = delete;
    LiveLaptop& operator=(const LiveLaptop&) = delete;

    void tell(const std::string& command) {
        const std::string line = command + '\n';
        EXPECT_EQ(::write(commands.get(), line.data(), line.size()), std::ssize(line));
    }

    // Ends it. All that it has said and complained of.
    std::string quit() {
        if (thread.joinable()) {
            tell("quit");
            thread.join();
        }
        return output.str() + errors.str();
    }

    const std::filesystem::path& folder() const { return runtime.path(); }

private:
    RuntimeFolder runtime;
    std::ostringstream output;
    std::ostringstream errors;
    Simulator simulator;
    FileDescriptor commands;
    FileDescriptor input;
    std::thread thread;
};

} // namespace quiverly
