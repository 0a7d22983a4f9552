#pragma once

#include <chrono>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

#include "tools/simulate/Command.h"
#include "tools/simulate/LaptopServer.h"
#include "tools/simulate/Motion.h"
#include "tools/simulate/Script.h"

namespace quiverly {

// The simulated laptop as a whole: its time, its commands, its motion, its sensor. One thread.
//
// It has a clock of milliseconds; at each of them the commands of the script that are due are obeyed and, when somebody
// listens, one report is sent. Time 0 of the script is the first report that anybody gets.
class Simulator {
public:
    struct Options {
        std::uint64_t seed = 0;
        bool verbose = false;
        Script script;
    };

    Simulator(Options options, std::ostream& output, std::ostream& errors);

    // Shows the socket and says so on the output; false, with the reason among the errors, when it cannot.
    bool open();

    // Obeys the lines that come in at `commands` until one is "quit" or `interruptions` has anything to read. The end
    // of the commands is not the end of the laptop.
    void run(int commands, int interruptions);

private:
    using Clock = std::chrono::steady_clock;
    using Milliseconds = std::chrono::milliseconds;

    Milliseconds now() const;
    std::chrono::nanoseconds untilNext() const;
    bool isReporting() const { return server.isReporting() && !asleep; }
    void readCommands(int& commands);
    void obeyLine(const std::string& line);
    void catchUp();
    void obeyScript();
    void sendReport();

    void obey(const command::Command& command);
    void apply(const command::Slap& slap);
    void apply(const command::Rest&) { motion.rest(); }
    void apply(const command::Tilt& tilt) { motion.tilt(tilt.up); }
    void apply(const command::Type&) { motion.type(); }
    void apply(const command::Walk&) { motion.walk(); }
    void apply(const command::Sleep&) { asleep = true; }
    void apply(const command::Wake&) { asleep = false; }
    void apply(const command::Vanish&) { server.vanish(); }
    void apply(const command::Appear&);
    void apply(const command::Deny&) { server.setPermitted(false); }
    void apply(const command::Allow&) { server.setPermitted(true); }
    void apply(const command::Quit&) { finished = true; }

    void say(const std::string& event);
    void complain(const std::string& what);

    Options options;
    std::ostream& output;
    std::ostream& errors;
    LaptopServer server{[this](const std::string& event) { say(event); }};
    Motion motion;
    const Clock::time_point origin = Clock::now();
    Milliseconds next{0}; // the next millisecond to live through
    std::optional<Milliseconds> scriptBegin;
    std::uint32_t reports = 0;
    bool asleep = false;
    bool finished = false;
    std::string unfinishedLine;
};

} // namespace quiverly
