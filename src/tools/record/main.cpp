// quiverly-record: writes down what the motion sensor reports, in the place of Quiverly itself.

#include <unistd.h>

#include <cstdio>
#include <span>
#include <string>

#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTimer>

#include "platform/linux/sensors/LaptopClient.h"
#include "platform/linux/sensors/iio/Accelerometer.h"
#include "sensing/AccelerometerReader.h"
#include "sockets/interruptions.h"
#include "tools/options/CommandLine.h"
#include "tools/record/OtherReaders.h"
#include "tools/record/Recorder.h"
#include "tools/record/RecordingFile.h"
#include "tools/record/SensorReport.h"

namespace quiverly {
namespace {

constexpr char exitStatuses[] =
    "Press Ctrl-C to end a recording. quiverly-replay shows what Quiverly makes of it.\n"
    "\n"
    "Exit status: 0 when all was done, 1 when the sensor cannot be read or the file cannot be written,\n"
    "2 when the options cannot be used.";

struct Options {
    std::string file;
    bool listen = false;
    bool sensors = false;
    bool json = false;
};

tl::expected<Options, EarlyExit> parseOptions(std::span<const char* const> arguments) {
    Options options;
    CommandLine line("quiverly-record", "Records what the motion sensor reports, to show what Quiverly hears.",
                     exitStatuses);
    line.addValue("[FILE]", options.file, anyText, "the recording, a new file");
    line.addFlag("--listen", options.listen, "answer slaps with clips meanwhile, as Quiverly does");
    line.addFlag("--sensors", options.sensors,
                 "list the accelerometers of this machine instead, and what is wrong with them");
    line.addFlag("--json", options.json, "list them as JSON, for bug reports");
    return line.read(arguments).and_then([&]() -> tl::expected<Options, EarlyExit> {
        const bool isRecording = !options.file.empty() && !options.sensors && !options.json;
        const bool isListing = options.file.empty() && options.sensors && !options.listen;
        if (isRecording || isListing) return options;
        return tl::unexpected(EarlyExit{.program = "quiverly-record",
                                        .status = unusable,
                                        .text = "quiverly-record: either FILE or --sensors is required\n"
                                                "Try 'quiverly-record --help'.\n"});
    });
}

void complain(const std::string& what) {
    std::fprintf(stderr, "quiverly-record: %s\n", what.c_str());
}

bool isWatched() {
    return ::isatty(STDERR_FILENO) == 1;
}

ExitStatus listSensors(bool asObjects) {
    constexpr auto time = std::chrono::seconds(2); // for each sensor
    if (isWatched()) complain("reading each accelerometer for two seconds: move the laptop meanwhile");
    const auto sensors = trySensors(systemFolder(), time);
    const bool isSimulated = LaptopClient::connect() != nullptr;
    const std::string text = asObjects ? asJson(sensors, isSimulated) : asText(sensors, isSimulated);
    if (std::fputs(text.c_str(), stdout) >= 0 && std::fflush(stdout) == 0) return success;
    complain("the list could not be written");
    return failed;
}

// Why the sensor cannot be opened; nothing when it can. Asked before the engine starts, because that opens the page on
// access to the sensor when it cannot.
std::string reasonAgainstOpening() {
    AccelerometerReader reader;
    return reader.start() ? "" : reader.lastOpenError().value_or("Accelerometer unavailable");
}

void explainMissingSensor() {
    for (const auto& sensor : findAccelerometers(systemFolder())) {
        if (sensor.refusal) complain(sensor.inWords() + ": not offered: it " + sensor.refusal->because);
    }
    complain("'quiverly-record --sensors' lists what this machine has");
}

void warnOfOtherReaders() {
    if (LaptopClient::connect() != nullptr) return; // it serves many
    for (const auto& sensor : findAccelerometers(systemFolder())) {
        if (sensor.refusal) continue;
        for (const auto& reader : otherReaders(sensor.rawFile(0))) {
            complain("note: " + reader.name + " (process " + std::to_string(reader.process) +
                     ") reads the sensor too, and each of the two gets fewer readings. Stop it there.");
        }
        return; // the others are not read
    }
}

// Runs until something can be read from `ends` or the file cannot be written.
ExitStatus run(const Recorder& recorder, const RecordingFile& file, const std::string& name, int ends) {
    const QSocketNotifier end(ends, QSocketNotifier::Read);
    QObject::connect(&end, &QSocketNotifier::activated, [] { QCoreApplication::exit(success); });
    QTimer timer;
    std::int64_t before = 0;
    int silentTurns = 0;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        if (!file.error().empty()) return QCoreApplication::exit(failed);
        silentTurns = file.reports() == before ? silentTurns + 1 : 0;
        before = file.reports();
        if (silentTurns == 12) complain("note: the sensor has reported nothing for three seconds");
        if (!isWatched()) return;
        std::fprintf(stderr, "\r%.0f s, %lld reports, %lld slaps noticed; Ctrl-C ends it\033[K", recorder.seconds(),
                     static_cast<long long>(before), static_cast<long long>(recorder.slaps()));
    });
    timer.start(std::chrono::milliseconds(250));
    const int status = QCoreApplication::exec();
    if (isWatched()) std::fputs("\r\033[K", stderr);
    if (status != success) complain(name + ": " + file.error());
    return status == success ? success : failed;
}

ExitStatus record(const Options& options, int ends) {
    auto created = RecordingFile::create(options.file);
    if (!created) {
        complain(created.error());
        return failed;
    }
    const std::string reason = reasonAgainstOpening();
    if (!reason.empty()) {
        ::unlink(options.file.c_str());
        complain(reason);
        explainMissingSensor();
        return failed;
    }
    warnOfOtherReaders();
    RecordingFile file(*std::move(created));
    Recorder recorder(file, options.listen ? Recorder::Sound::on : Recorder::Sound::off);
    if (!recorder.start()) {
        complain(recorder.error());
        return failed;
    }
    return run(recorder, file, options.file, ends);
}

} // namespace
} // namespace quiverly

int main(int argc, char** argv) {
    using namespace quiverly;
    const auto options = parseOptions(std::span(argv, static_cast<std::size_t>(argc)).subspan(1));
    if (!options) return options.error().print();
    if (options->sensors) return listSensors(options->json);
    const FileDescriptor ends = interruptions();
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName("quiverly");
    return record(*options, ends.get());
}
