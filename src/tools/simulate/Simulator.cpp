#include "tools/simulate/Simulator.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <ostream>

#include "platform/linux/input.h"
#include "tools/simulate/wire_report.h"

namespace quiverly {

namespace {

constexpr std::size_t longestLine = 1000;                 // bytes; what is longer is no command
constexpr std::chrono::milliseconds longestBacklog{1000}; // what is older when the laptop wakes up never happened
constexpr std::chrono::hours forever{24};

} // namespace

Simulator::Simulator(Options options, std::ostream& output, std::ostream& errors)
    : options(std::move(options)), output(output), errors(errors), motion(this->options.seed) {}

bool Simulator::open() {
    if (const auto error = server.appear()) {
        complain(*error);
        return false;
    }
    output << "quiverly-simulate: ready at " << server.address() << std::endl;
    return true;
}

void Simulator::run(int commands, int interruptions) {
    std::vector<pollfd> inputs;
    while (!finished) {
        inputs = {inputOf(commands), inputOf(interruptions)};
        server.addInputs(inputs);
        waitForInput(inputs, untilNext());
        server.handleInputs(std::span(inputs).subspan(2));
        if (inputs[0].revents != 0) readCommands(commands);
        if (inputs[1].revents != 0) finished = true;
        catchUp();
    }
    server.vanish();
}

Simulator::Milliseconds Simulator::now() const {
    return std::chrono::floor<Milliseconds>(Clock::now() - origin);
}

std::chrono::nanoseconds Simulator::untilNext() const {
    if (isReporting()) return origin + next - Clock::now();
    if (scriptBegin && !options.script.empty()) {
        return origin + *scriptBegin + options.script.front().due - Clock::now();
    }
    return forever;
}

void Simulator::readCommands(int& commands) {
    std::array<char, 4096> bytes; // NOLINT: filled by the next call
    const ssize_t length = ::read(commands, bytes.data(), bytes.size());
    if (length <= 0) {
        commands = -1;
        return;
    }
    for (const char byte : std::span(bytes).first(static_cast<std::size_t>(length))) {
        if (byte == '\n') {
            obeyLine(std::exchange(unfinishedLine, {}));
        } else if (unfinishedLine.size() <= longestLine) {
            unfinishedLine += byte;
        }
    }
}

void Simulator::obeyLine(const std::string& line) {
    if (line.size() > longestLine) return complain("a line of more than 1000 bytes is no command");
    if (command::saysNothing(line)) return;
    const auto parsed = command::parse(line);
    if (const auto* mistake = std::get_if<command::Mistake>(&parsed)) return complain(mistake->text);
    obey(std::get<command::Command>(parsed));
}

void Simulator::catchUp() {
    const Milliseconds end = now();
    next = std::max(next, end - longestBacklog);
    for (; next <= end && !finished; ++next) {
        if (isReporting() && !scriptBegin) scriptBegin = next;
        obeyScript();
        if (isReporting()) sendReport();
    }
}

void Simulator::obeyScript() {
    while (scriptBegin && !options.script.empty() && *scriptBegin + options.script.front().due <= next) {
        const command::Command command = options.script.front().command;
        options.script.pop_front();
        obey(command);
    }
}

void Simulator::sendReport() {
    server.report(wireReport(motion.next(), ++reports));
}

void Simulator::obey(const command::Command& command) {
    std::visit([this](const auto& what) { apply(what); }, command);
}

void Simulator::apply(const command::Slap& slap) {
    if (!isReporting()) return complain("nobody listens to the sensor: the slap is lost");
    motion.slap(slap.blow);
    say("slap of " + std::to_string(slap.blow.peak) + " g");
}

void Simulator::apply(const command::Appear&) {
    if (const auto error = server.appear()) complain(*error);
}

void Simulator::say(const std::string& event) {
    if (options.verbose) output << event << std::endl;
}

void Simulator::complain(const std::string& what) {
    errors << "quiverly-simulate: " << what << std::endl;
}

} // namespace quiverly
