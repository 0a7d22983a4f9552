// A simulated laptop that says when it was slapped.
//
//     bench-laptop [REPORTS A SECOND]
//
// Serves the socket of quiverly-simulate. For each line of standard input it gives a slap of that peak (g), which
// begins with a report that readers decode, and prints when that report left, in nanoseconds of the monotonic clock.
// Ends with its input, and then prints what became of its clients.

#include <unistd.h>

#include <array>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "sockets/input.h"
#include "tools/simulate/InputReport.h"
#include "tools/simulate/LaptopServer.h"

namespace quiverly {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int decodedReport = 8; // one report in eight
constexpr std::chrono::milliseconds longestBacklog{100};

class Laptop {
public:
    explicit Laptop(int reportsPerSecond)
        : period(std::chrono::nanoseconds(std::chrono::seconds(1)) / reportsPerSecond) {}

    int run() {
        if (const auto shown = server.appear(); !shown) {
            std::cerr << "bench-laptop: " << shown.error() << '\n';
            return EXIT_FAILURE;
        }
        std::cout << "ready" << std::endl;
        std::vector<pollfd> inputs;
        while (!finished) {
            inputs = {inputOf(STDIN_FILENO)};
            server.addInputs(inputs);
            waitForInput(inputs, next - Clock::now());
            server.handleInputs(std::span(inputs).subspan(1));
            if (inputs[0].revents != 0) readSlap();
            catchUp();
        }
        server.vanish();
        return EXIT_SUCCESS;
    }

private:
    void readSlap() {
        std::array<char, 64> line{};
        const ssize_t size = ::read(STDIN_FILENO, line.data(), line.size());
        finished = size <= 0;
        if (!finished) std::from_chars(line.data(), line.data() + size, wantedPeak);
    }

    void catchUp() {
        const Clock::time_point now = Clock::now();
        if (now - next > longestBacklog) next = now;
        for (; next <= now; next += period) {
            if (server.isReporting()) report();
        }
    }

    void report() {
        const bool isDecoded = ++reports % decodedReport == 0;
        if (isDecoded) peak = std::exchange(wantedPeak, 0.0);
        const InputReport bytes = inputReport({.x = 0, .y = 0, .z = 1 + peak}, reports);
        const Clock::time_point left = Clock::now();
        server.report(bytes);
        if (isDecoded && peak > 0) std::cout << "slap " << left.time_since_epoch().count() << std::endl;
    }

    LaptopServer server{[](const std::string& event) { std::cout << event << std::endl; }};
    const std::chrono::nanoseconds period;
    Clock::time_point next = Clock::now();
    std::uint32_t reports = 0;
    double wantedPeak = 0; // of the next slap, g
    double peak = 0;       // of the slap that goes on
    bool finished = false;
};

} // namespace
} // namespace quiverly

int main(int argc, char** argv) {
    const int reportsPerSecond = argc > 1 ? std::atoi(argv[1]) : 1000; // NOLINT(cert-err34-c)
    if (reportsPerSecond <= 0) return 2;
    return quiverly::Laptop(reportsPerSecond).run();
}
