// quiverly-simulate: simulates a laptop with a motion sensor and obeys commands on standard input.

#include <unistd.h>

#include <exception>
#include <iostream>
#include <span>
#include <string>
#include <utility>

#include "sockets/interruptions.h"
#include "tools/options/CommandLine.h"
#include "tools/recording/numbers.h"
#include "tools/simulate/Simulator.h"

namespace quiverly {
namespace {

constexpr char exitStatuses[] =
    "\nExit status: 0 when it ended as asked, 1 when the socket, the recording or the window cannot be used,\n"
    "2 when the options or the script cannot be used.";

tl::expected<std::string, std::string> recordingName(const std::string& text) {
    if (text == "-") return tl::make_unexpected("standard input is for commands: name a file");
    return text;
}

struct Options {
    Simulator::Options simulator;
    bool window = false;
};

tl::expected<Options, EarlyExit> parseOptions(std::span<const char* const> arguments) {
    Options all;
    Simulator::Options& options = all.simulator;
    CommandLine line("quiverly-simulate",
                     "Simulates a laptop with a motion sensor for Quiverly and obeys commands on standard input.",
                     std::string(command::help) + exitStatuses);
    line.addValue("--script", options.script, readScript,
                  "obey timed commands, such as \"2.5 slap 0.6\"; time 0 is the first report", "FILE");
    line.addValue("--recording", options.recording, recordingName,
                  "send the reports of a recording at their times, then sleep", "FILE");
    line.addValue("--seed", options.seed, wholeNumber, "start of the sensor's noise, 0 unless given", "N");
    line.addFlag("--window", all.window, "show the laptop in a window, where it can be slapped");
    line.addFlag("--verbose", options.verbose, "tell what happens");
    return line.read(arguments).map([&] { return std::move(all); });
}

// Gives the laptop a window. The error says why it has none.
tl::expected<void, std::string> showWindow(Simulator& simulator) {
    return WindowProcess::start(WindowProcess::program()).map([&](WindowProcess&& window) {
        simulator.show(std::move(window));
    });
}

ExitStatus simulate(Options options) {
    const FileDescriptor ends = interruptions();
    Simulator simulator(std::move(options.simulator), std::cout, std::cerr);
    auto ended = simulator.open();
    if (options.window) ended = ended.and_then([&] { return showWindow(simulator); });
    ended = ended.and_then([&] { return simulator.run(STDIN_FILENO, ends.get()); });
    if (ended) return success;
    std::cerr << "quiverly-simulate: " << ended.error() << '\n';
    return failed;
}

} // namespace
} // namespace quiverly

int main(int argc, char** argv) {
    try {
        auto options = quiverly::parseOptions(std::span(argv, static_cast<std::size_t>(argc)).subspan(1));
        return options ? quiverly::simulate(*std::move(options)) : options.error().print();
    } catch (const std::exception& failure) {
        std::cerr << "quiverly-simulate: " << failure.what() << '\n';
        return quiverly::failed;
    }
}
