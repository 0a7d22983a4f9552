#pragma once

#include <chrono>
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <tl/expected.hpp>

#include "tools/simulate/Command.h"
#include "tools/simulate/CommandInput.h"
#include "tools/simulate/LaptopServer.h"
#include "tools/simulate/Motion.h"
#include "tools/simulate/RecordingPlayer.h"
#include "tools/simulate/Script.h"
#include "tools/simulate/WindowProcess.h"

namespace quiverly {

// The simulated laptop as a whole: its time, its commands, its motion, its sensor. One thread.
//
// It has a clock of milliseconds. At each of them it obeys the commands of the script that are due and, while the
// sensor reports, sends one report, or those of the recording that are due. Time 0 of script and recording is the first
// report. After the end of the recording the laptop sleeps; awake again, it reports its own motion. If it has a window,
// commands come from there too, and the window is told what happens; the laptop ends with its window.
class Simulator {
public:
    struct Options {
        std::uint64_t seed = 0;
        bool verbose = false;
        Script script = {};
        std::optional<std::string> recording = {}; // a file whose reports are sent instead of its own motion
    };

    Simulator(Options options, std::ostream& output, std::ostream& errors);

    // Shows the socket and says so in the first line of the output. The error says why it cannot be shown, or what is
    // wrong with the recording up to its first report.
    tl::expected<void, std::string> open();

    // Gives it a window, before it runs.
    void show(WindowProcess shown) { window.emplace(std::move(shown)); }

    // Obeys the lines that come in at `commands`, until one of them is "quit" or there is something to read at
    // `interruptions`; keeps running after the end of `commands`. The error says what is wrong with the recording
    // or with the end of the window.
    tl::expected<void, std::string> run(int commands, int interruptions);

private:
    using Clock = std::chrono::steady_clock;
    using Milliseconds = std::chrono::milliseconds;

    Milliseconds now() const;
    std::chrono::nanoseconds untilNext() const;
    bool isReporting() const { return server.isReporting() && !asleep; }
    void skipSilence();
    void obeyLines(const std::vector<std::string>& lines);
    void obeyLine(const std::string& line);
    void obeyWindow(CommandInput& input);
    void catchUp();
    void tellReader();
    void obeyScript();
    void sendReports();
    void playRecording();
    void send(std::span<const std::uint8_t> report);
    void missRecording();

    void obey(const command::Command& command, const std::string& line);
    bool appear();
    bool isFelt(std::string_view what);
    void apply(const command::Slap& slap);
    void apply(const command::Rest&) { motion.rest(); }
    void apply(const command::Tilt& tilt) { motion.tilt(tilt.up); }
    void apply(const command::Type&) { motion.type(); }
    void apply(const command::Walk&) { motion.walk(); }
    void apply(const command::Bump&);
    void apply(const command::Lid&);
    void apply(const command::Lift&);
    void apply(const command::Sleep&) { asleep = true; }
    void apply(const command::Wake&) { asleep = false; }
    void apply(const command::Vanish&) { server.vanish(); }
    void apply(const command::Appear&) {} // it has appeared
    void apply(const command::Deny&) { server.permit(false); }
    void apply(const command::Allow&) { server.permit(true); }
    void apply(const command::Quit&) { finished = true; }

    void say(const std::string& event);
    void complain(const std::string& what);
    void tellWindow(const window::Message& message);

    Options options;
    std::ostream& output;
    std::ostream& errors;
    LaptopServer server{[this](const std::string& event) { say(event); }};
    Motion motion;
    std::optional<WindowProcess> window;
    std::optional<std::int64_t>
        toldReader; // the process that the window takes for the reader; none while no reports flow
    std::optional<RecordingPlayer> recording;
    const Clock::time_point origin = Clock::now();
    Milliseconds next{0};              // the next millisecond to live through
    std::optional<Milliseconds> begin; // when the first report was sent
    std::uint32_t reports = 0;
    bool asleep = false;
    bool finished = false;
    tl::expected<void, std::string> outcome; // of the run
};

} // namespace quiverly
