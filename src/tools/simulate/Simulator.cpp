#include "tools/simulate/Simulator.h"

#include <algorithm>
#include <ostream>
#include <utility>

#include "sockets/input.h"
#include "tools/simulate/InputReport.h"

namespace quiverly {

namespace {

constexpr std::chrono::milliseconds longestBacklog{1000}; // what is older when the laptop wakes up never happened
constexpr std::chrono::nanoseconds wholeDay = std::chrono::hours(24);

} // namespace

Simulator::Simulator(Options options, std::ostream& output, std::ostream& errors)
    : options(std::move(options)), output(output), errors(errors), motion(this->options.seed) {}

tl::expected<void, std::string> Simulator::open() {
    if (options.recording) {
        auto player = RecordingPlayer::open(*options.recording);
        if (!player) return tl::unexpected(player.error());
        recording = *std::move(player);
    }
    return server.appear().map([this] { output << "quiverly-simulate: ready at " << server.address() << std::endl; });
}

tl::expected<void, std::string> Simulator::run(int commands, int interruptions) {
    CommandInput input(commands);
    CommandInput windowInput(window ? window->commands() : -1);
    std::vector<pollfd> inputs;
    while (!finished) {
        inputs = {inputOf(input.descriptor()), inputOf(interruptions), inputOf(windowInput.descriptor()),
                  window ? window->room() : inputOf(-1)};
        server.addInputs(inputs);
        waitForInput(inputs, std::min(untilNext(), input.pause().value_or(wholeDay)));
        skipSilence();
        server.handleInputs(std::span(inputs).subspan(4));
        if (inputs[0].revents != 0) obeyLines(input.read());
        if (inputs[1].revents != 0) finished = true;
        if (inputs[2].revents != 0) obeyWindow(windowInput);
        if (inputs[3].revents != 0) window->flush();
        catchUp();
    }
    server.vanish();
    return outcome;
}

Simulator::Milliseconds Simulator::now() const {
    return std::chrono::floor<Milliseconds>(Clock::now() - origin);
}

std::chrono::nanoseconds Simulator::untilNext() const {
    if (isReporting()) return origin + next - Clock::now();
    if (begin && !options.script.empty()) return origin + *begin + options.script.front().due - Clock::now();
    return wholeDay;
}

// There is nothing to catch up on for the time during which the sensor did not report.
void Simulator::skipSilence() {
    if (isReporting()) return;
    next = std::max(next, now());
    missRecording();
}

void Simulator::obeyLines(const std::vector<std::string>& lines) {
    for (const std::string& line : lines) obeyLine(line);
}

void Simulator::obeyWindow(CommandInput& input) {
    obeyLines(input.read());
    if (!input.hasEnded() || finished) return;
    server.vanish(); // those who read must not wait for the window's end
    outcome = window->wait();
    finished = true;
}

void Simulator::obeyLine(const std::string& line) {
    if (line.size() > CommandInput::longestLine) return complain("a line of more than 1000 bytes is not a command");
    if (command::isRemark(line)) return;
    const auto command = command::parse(line);
    if (!command) return complain(command.error());
    obey(*command, line);
}

void Simulator::catchUp() {
    const Milliseconds end = now();
    next = std::max(next, end - longestBacklog);
    for (; next <= end && !finished; ++next) {
        if (isReporting() && !begin) begin = next;
        obeyScript();
        tellReader();
        isReporting() ? sendReports() : missRecording();
    }
    tellReader(); // there may be no more to live through for a long time
}

void Simulator::tellReader() {
    const auto reader = isReporting() ? std::optional<std::int64_t>(server.reader()) : std::nullopt;
    if (reader == toldReader) return;
    toldReader = reader;
    tellWindow(reader ? window::Message(window::Reporting{*reader}) : window::Silent{});
}

void Simulator::obeyScript() {
    Script& script = options.script;
    while (begin && !script.empty() && *begin + script.front().due <= next) {
        const TimedCommand timed = std::move(script.front());
        script.pop_front();
        obey(timed.command, timed.line);
    }
}

void Simulator::sendReports() {
    if (recording) {
        playRecording();
    } else {
        send(inputReport(motion.next(), ++reports));
    }
}

void Simulator::playRecording() {
    auto report = recording->take(next - *begin);
    for (; report && *report; report = recording->take(next - *begin)) send(**report);
    if (!report) {
        outcome = tl::unexpected(report.error());
        finished = true;
    } else if (recording->hasEnded()) {
        say("the recording has ended");
        recording.reset();
        asleep = true;
        tellWindow(window::Obeyed{"sleep"});
    }
}

void Simulator::send(std::span<const std::uint8_t> report) {
    server.report(report);
    if (window) window->report(next.count(), report);
}

// Reports of the recording are lost while the sensor does not report.
void Simulator::missRecording() {
    if (!recording || !begin) return;
    for (auto report = recording->take(next - *begin); report && *report;) report = recording->take(next - *begin);
}

void Simulator::obey(const command::Command& command, const std::string& line) {
    say(line);
    if (std::holds_alternative<command::Appear>(command) && !appear()) return;
    tellWindow(window::Obeyed{line}); // of a slap that is lost, too: the window shows it all the same
    std::visit([this](const auto& what) { apply(what); }, command);
}

bool Simulator::appear() {
    const auto shown = server.appear();
    if (!shown) complain(shown.error());
    return shown.has_value();
}

// What happens once is lost, and does not wait for the next reports.
bool Simulator::isFelt(std::string_view what) {
    if (isReporting() && !recording) return true;
    const std::string why = isReporting() ? "a recording is being played" : "the sensor does not report now";
    complain(why + ": the " + std::string(what) + " is lost");
    return false;
}

void Simulator::apply(const command::Slap& slap) {
    if (isFelt("slap")) motion.slap(slap.blow);
}

void Simulator::apply(const command::Bump&) {
    if (isFelt("bump")) motion.bump();
}

void Simulator::apply(const command::Lid&) {
    if (isFelt("thump of the lid")) motion.shutLid();
}

void Simulator::apply(const command::Lift&) {
    if (isFelt("lift")) motion.lift();
}

void Simulator::say(const std::string& event) {
    if (options.verbose) output << event << std::endl;
}

void Simulator::complain(const std::string& what) {
    errors << "quiverly-simulate: " << what << std::endl;
    tellWindow(window::Problem{what});
}

void Simulator::tellWindow(const window::Message& message) {
    if (window) window->tell(message);
}

} // namespace quiverly
