#include "tools/replay/Replay.h"

#include <filesystem>
#include <string>
#include <utility>
#include <variant>

#include "tools/replay/utf8.h"

namespace quiverly {

namespace {

constexpr char deviceClass[] = "AppleSPUHIDDevice";

void setSensor(VirtualRegistry& registry, SensorAnswer answer) {
    VirtualService accelerometer = VirtualService::accelerometer();
    accelerometer.canBecomeDevice = answer != SensorAnswer::noDevice;
    accelerometer.openResult = answer == SensorAnswer::denied ? hid::notPermitted : hid::success;
    registry.services = {VirtualService::driver()};
    if (answer != SensorAnswer::missing) registry.services.push_back(accelerometer);

    registry.unbuildable.clear();
    if (answer == SensorAnswer::noQuery) registry.unbuildable.insert(deviceClass);
    registry.unsearchable.clear();
    if (answer == SensorAnswer::noLookup) registry.unsearchable.insert(deviceClass);
}

// A clip by its last folder and its own name, as sexy/28.mp3.
std::string nameOf(const std::filesystem::path& clip) {
    return clip.parent_path().filename().string() + '/' + clip.filename().string();
}

} // namespace

Replay::Replay(VirtualPlatform& platform, EventPrinter& events, Samples samples, Plot* plot)
    : platform(platform), events(events), plot(plot) {
    setSensor(platform.registry, SensorAnswer::ok);
    watchSamples(samples);
    watchState();
    watchPlatform();
}

void Replay::watchSamples(Samples printing) {
    engine.onSample = [this, printing](double x, double y, double z) {
        ++samples;
        if (printing == Samples::printed) events.sample(x, y, z);
        if (plot) plotSample();
    };
}

// A change is announced before it is made, so what was written is printed a little later: before whatever follows.
void Replay::watchState() {
    phaseWatcher = engine.phase.willChange.subscribe([this] { phaseWritten = true; });
    slapWatcher = engine.lastAmplitude.willChange.subscribe([this] { slapAccepted = true; });
}

void Replay::watchPlatform() {
    platform.audio.onPlay = [this](const VirtualAudio::PlayedClip& clip) {
        ++clips;
        printChanges();
        const std::string name = nameOf(clip.file);
        events.clip(name, clip.volume);
        if (plot) plot->clips.push_back({.seconds = seconds, .name = validUtf8(name)});
    };
    platform.workspace.onOpen = [this](const std::string& url) {
        printChanges();
        events.settingsPage(url);
    };
}

void Replay::perform(const RecordingLine& line) {
    seconds = line.seconds;
    events.setTime(seconds);
    platform.calendar.now = line.calendar;
    if (std::exchange(firstLine, false) && std::holds_alternative<action::Report>(line.action)) {
        carryOut(action::Sound{true});
        carryOut(action::Start{});
        printChanges();
    }
    std::visit([this](const auto& action) { carryOut(action); }, line.action);
    platform.mainQueue.drain();
    printChanges();
}

void Replay::finish() {
    events.end({.reports = platform.registry.reportsDelivered(),
                .samples = samples,
                .slaps = engine.slapCount,
                .clips = clips});
}

void Replay::carryOut(const action::Report& report) {
    platform.registry.deliver(report.bytes);
}

void Replay::carryOut(const action::Start&) {
    engine.start();
}

void Replay::carryOut(const action::Stop&) {
    engine.stop();
    while (platform.registry.deviceIsOpen()) platform.threads.turn();
}

void Replay::carryOut(const action::Sound& sound) {
    engine.soundEnabled = sound.on;
}

void Replay::carryOut(const action::Pack& pack) {
    engine.pack = pack.pack;
}

void Replay::carryOut(const action::Threshold& threshold) {
    engine.threshold = threshold.value;
}

void Replay::carryOut(const action::BeginCheck&) {
    engine.beginHardwareCheck([this](double amplitude) {
        printChanges();
        events.checkSlap(amplitude);
    });
}

void Replay::carryOut(const action::EndCheck&) {
    engine.endHardwareCheck();
}

// The calendar already reads what it reads after the jump.
void Replay::carryOut(const action::ClockJump&) {}

void Replay::carryOut(const action::Sensor& sensor) {
    setSensor(platform.registry, sensor.answer);
}

void Replay::printChanges() {
    if (std::exchange(phaseWritten, false)) events.phase(engine.phase);
    if (std::exchange(slapAccepted, false)) {
        events.slap(engine.slapCount, engine.lastAmplitude);
        if (plot) plot->slaps.push_back({.seconds = seconds, .amplitude = engine.lastAmplitude});
    }
}

void Replay::plotSample() {
    const SlapDetector& detector = engine.slapDetector();
    const double magnitude = detector.magnitude();
    const double baseline = detector.runningBaseline();
    plot->trace.add({.seconds = seconds,
                     .magnitude = magnitude,
                     .baseline = baseline,
                     .score = SlapDetector::score(magnitude, baseline, lastMagnitude),
                     .threshold = detector.threshold});
    plot->cooldowns.observe(seconds, detector.isCoolingDown(calendar::now()));
    plot->settling.observe(seconds, engine.isSettling());
    lastMagnitude = magnitude;
}

} // namespace quiverly
