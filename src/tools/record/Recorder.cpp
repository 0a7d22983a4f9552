#include "tools/record/Recorder.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <span>

#include "identity.h"
#include "platform/linux/sensors/SensorTap.h"
#include "tools/record/SensorReport.h"

namespace quiverly {

namespace {

// The shortest text that reads back as the same number.
std::string inWords(double number) {
    std::array<char, 400> text; // NOLINT: filled by the next call
    const auto end = std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed);
    return {text.data(), end.ptr};
}

} // namespace

Recorder::Recorder(RecordingFile& file, Sound sound) : file(file), sound(sound) {
    engine.onSample = [this](double, double, double) { printSlaps(); };
}

Recorder::~Recorder() {
    engine.stop();
}

bool Recorder::start() {
    tapSensors({.onOpen = [this](const std::string& sensor) { writeHeader(sensor); },
                .onReport = [this](std::span<const std::uint8_t> report) { file.addReport(report, time()); }});
    engine.soundEnabled = sound == Sound::on;
    engine.start();
    return engine.isRunning();
}

double Recorder::seconds() const {
    return std::chrono::duration<double>(time()).count();
}

// Before the first report: the settings stand here as commands, so that a replay notices what was noticed now.
void Recorder::writeHeader(const std::string& sensor) {
    file.addComment("Quiverly " + std::string(identity::version) + " on " + kernel());
    file.addComment("sensor: " + sensor);
    begin = Clock::now();
    file.addCommand("threshold " + inWords(engine.threshold), {});
    file.addCommand("pack " + std::string(engine.pack.get().rawValue()), {});
    file.addCommand("sound on", {});
    file.addCommand("start", {});
}

void Recorder::printSlaps() {
    if (engine.slapCount == printed) return;
    printed = engine.slapCount;
    std::printf("slap %lld: %s g\n", static_cast<long long>(printed), inWords(engine.lastAmplitude).c_str());
    std::fflush(stdout);
}

} // namespace quiverly
