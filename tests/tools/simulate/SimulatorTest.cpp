#include "tools/simulate/Simulator.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>

#include "sockets/FileDescriptor.h"
#include "support/Listener.h"
#include "support/Pipe.h"
#include "support/RuntimeFolder.h"
#include "support/Waiting.h"

namespace quiverly {
namespace {

// A pair of terminals; one cannot be read while the other is closed.
class TerminalPair {
public:
    TerminalPair() {
        EXPECT_EQ(::grantpt(near.get()), 0);
        EXPECT_EQ(::unlockpt(near.get()), 0);
        EXPECT_EQ(::ptsname_r(near.get(), name.data(), name.size()), 0);
        openFar();
        far.reset();
        char byte = 0;
        EXPECT_EQ(::read(near.get(), &byte, 1), -1);
        EXPECT_EQ(errno, EIO);
    }

    void openFar() { far = FileDescriptor(::open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC)); }

    FileDescriptor near{::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)};
    FileDescriptor far;

private:
    std::array<char, 64> name = {};
};

TEST(SimulatorTest, CommandsGoOnWhenTheirTerminalCanBeReadAgain) {
    const RuntimeFolder folder;
    TerminalPair terminals;
    std::ostringstream output;
    std::ostringstream errors;
    Simulator simulator({}, output, errors);
    ASSERT_TRUE(simulator.open());
    Pipe interruptions;
    std::atomic<bool> ended = false;
    std::thread laptop([&] {
        EXPECT_TRUE(simulator.run(terminals.near.get(), interruptions.readEnd.get()));
        ended = true;
    });
    {
        Listener listener;
        EXPECT_TRUE(listener.starts());
        EXPECT_TRUE(listener.hears()); // it has tried to read, and lives on
    }
    terminals.openFar();
    EXPECT_EQ(::write(terminals.far.get(), "quit\n", 5), 5);
    EXPECT_TRUE(waitUntil([&] { return ended.load(); }));
    interruptions.writeEnd.reset(); // ends it in any case
    laptop.join();
    EXPECT_EQ(errors.str(), "");
}

TEST(SimulatorTest, WhatHappensOnceIsLostWhileTheSensorDoesNotReport) {
    const RuntimeFolder folder;
    std::ostringstream output;
    std::ostringstream errors;
    Simulator simulator({}, output, errors);
    ASSERT_TRUE(simulator.open());
    const Pipe commands;
    constexpr std::string_view lines = "slap 0.5\nbump\nlid\nlift\nwalk\nquit\n";
    ASSERT_EQ(::write(commands.writeEnd.get(), lines.data(), lines.size()), std::ssize(lines));
    EXPECT_TRUE(simulator.run(commands.readEnd.get(), -1));
    const std::string silent = "quiverly-simulate: the sensor does not report now: the ";
    EXPECT_EQ(errors.str(), silent + "slap is lost\n" + silent + "bump is lost\n" + silent +
                                "thump of the lid is lost\n" + silent + "lift is lost\n");
}

} // namespace
} // namespace quiverly
