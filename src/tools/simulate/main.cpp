#include <getopt.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "identity.h"
#include "sockets/FileDescriptor.h"
#include "tools/recording/unsigned_integer.h"
#include "tools/simulate/Simulator.h"

namespace {

using namespace quiverly;

constexpr int unusable = 2; // exit status

int fail(const std::string& what) {
    std::cerr << "quiverly-simulate: " << what << '\n';
    return unusable;
}

int help() {
    std::cout << R"(Usage: quiverly-simulate [OPTIONS]
Simulates a laptop with a motion sensor for Quiverly and obeys commands on standard input, whose end is not its end.

  --script FILE     obey timed commands, such as "2.5 slap 0.6"; time 0 is the first report that anybody gets
  --recording FILE  send the reports of a recording at their times, then sleep
  --seed NUMBER     of the sensor's noise (0)
  --verbose         tell what happens
  --help            print this text
  --version         print the version

)" << command::help;
    return 0;
}

// What an option says, into the options; nothing, or what is wrong with it.
using Problem = std::optional<std::string>;

Problem takeScript(Simulator::Options& options, const char* file) {
    auto script = readScript(file);
    if (!script) return script.error();
    options.script = *std::move(script);
    return std::nullopt;
}

Problem takeRecording(Simulator::Options& options, const char* file) {
    if (std::string_view(file) == "-") return "standard input is for commands: name a recording";
    options.recording = file;
    return std::nullopt;
}

Problem takeSeed(Simulator::Options& options, const char* text) {
    const auto seed = unsignedInteger(text);
    if (!seed) return "--seed takes a whole number of 64 bits, not \"" + std::string(text) + '"';
    options.seed = *seed;
    return std::nullopt;
}

// The options, or the status with which to end.
std::variant<Simulator::Options, int> parse(int argc, char** argv) {
    enum Option { script = 1, recording, seed, verbose, askHelp, askVersion };
    const option known[] = {
        {"script", required_argument, nullptr, script},
        {"recording", required_argument, nullptr, recording},
        {"seed", required_argument, nullptr, seed},
        {"verbose", no_argument, nullptr, verbose},
        {"help", no_argument, nullptr, askHelp},
        {"version", no_argument, nullptr, askVersion},
        {nullptr, 0, nullptr, 0},
    };
    Simulator::Options options;
    // NOLINTNEXTLINE(concurrency-mt-unsafe): the only thread
    for (int found = 0; (found = ::getopt_long(argc, argv, "", known, nullptr)) != -1;) {
        Problem problem;
        switch (found) {
        case script:
            problem = takeScript(options, optarg);
            break;
        case recording:
            problem = takeRecording(options, optarg);
            break;
        case seed:
            problem = takeSeed(options, optarg);
            break;
        case verbose:
            options.verbose = true;
            break;
        case askHelp:
            return help();
        case askVersion:
            std::cout << "quiverly-simulate " << identity::version << '\n';
            return 0;
        default:
            return unusable; // getopt_long has said why
        }
        if (problem) return fail(*problem);
    }
    if (optind < argc) return fail("unexpected \"" + std::string(argv[optind]) + "\"; try --help");
    return options;
}

// Makes the signals that ask a program to end readable instead, and lets it do without commands and listeners.
FileDescriptor interruptions() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&signals, signal);
    ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGTTIN, SIG_IGN); // a job in the background that reads from its terminal would be stopped
    return FileDescriptor(::signalfd(-1, &signals, SFD_CLOEXEC));
}

} // namespace

int main(int argc, char** argv) {
    auto options = parse(argc, argv);
    if (const int* status = std::get_if<int>(&options)) return *status;
    const FileDescriptor ends = interruptions();
    Simulator simulator(std::move(std::get<Simulator::Options>(options)), std::cout, std::cerr);
    const auto ended = simulator.open().and_then([&] { return simulator.run(STDIN_FILENO, ends.get()); });
    if (ended) return 0;
    fail(ended.error());
    return 1;
}
