// quiverly-replay: lets the engine live through a recording of sensor reports and prints what happens.

#include <csignal>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <span>
#include <string>
#include <variant>

#include "identity.h"
#include "platform/shared/program_resources.h"
#include "platform/virtual/VirtualPlatform.h"
#include "tools/recording/Recording.h"
#include "tools/replay/EventOutput.h"
#include "tools/replay/EventPrinter.h"
#include "tools/replay/Options.h"
#include "tools/replay/Progress.h"
#include "tools/replay/Replay.h"

namespace quiverly {
namespace {

enum ExitStatus { success = 0, failed = 1, unusable = 2 };

constexpr char usage[] =
    "Usage: quiverly-replay [OPTION]... RECORDING\n"
    "Replays a recording of sensor reports (- for standard input) and prints what happens, one JSON object a line.\n"
    "\n"
    "  --samples           print every sample too\n"
    "  --pack TEXT         the stored sound pack: pain, sexy, halo or lizard\n"
    "  --threshold NUMBER  the stored threshold, in g\n"
    "  --resources DIR     the folder that holds audio/<pack>/*.mp3\n"
    "  --seed N            start of the random choices, 0 unless given\n"
    "  --help              print this and exit\n"
    "  --version           print the version and exit\n"
    "\n"
    "Exit status: 0 when the whole recording was replayed, 1 when the output could not be written\n"
    "or the system did not let the program work, 2 when the options or the recording cannot be used.\n";

void complain(const std::string& what) {
    std::fprintf(stderr, "quiverly-replay: %s\n", what.c_str());
}

// Writes what is left. The exit status, which was to be `status`.
ExitStatus finish(EventOutput& output, ExitStatus status) {
    output.flush();
    if (!output.error()) return status;
    complain("standard output: " + output.error().message());
    return failed;
}

ExitStatus print(const std::string& text) {
    EventOutput output;
    output.text = text;
    return finish(output, success);
}

void prepare(VirtualPlatform& platform, const Options& options) {
    if (options.pack) platform.defaults.values["bonko.pack"] = *options.pack;
    if (options.threshold) platform.defaults.values["bonko.threshold"] = *options.threshold;
    platform.random.generator.seed(options.seed);
    platform.resources.folders = programResourceFolders();
    if (!options.resources) return;
    platform.resources.folders = {*options.resources};
    std::error_code unknown;
    if (!std::filesystem::is_directory(*options.resources, unknown)) {
        complain(*options.resources + ": no such folder, all packs are empty");
    }
}

ExitStatus replay(const Options& options) {
    VirtualPlatform platform;
    prepare(platform, options);

    EventOutput output;
    Progress progress;
    Recording recording(options.recording, [&] { // while nothing comes, all that happened has been printed
        if (output.text.empty()) return;
        progress.clearForOutput();
        output.flush();
    });
    EventPrinter events(output.text);
    Replay replay(platform, events, options.samples ? Replay::Samples::printed : Replay::Samples::hidden);

    for (auto line = recording.next(); line && !output.error(); line = recording.next()) {
        replay.perform(*line);
        progress.advance(line->seconds);
    }
    const auto problem = recording.problem();
    if (!problem) replay.finish();

    progress.clear();
    const ExitStatus status = finish(output, problem ? unusable : success);
    if (problem) complain(*problem);
    return status;
}

ExitStatus run(std::span<const char* const> arguments) {
    const auto parsed = parseOptions(arguments);
    if (const auto* unusableOptions = std::get_if<UnusableOptions>(&parsed)) {
        complain(unusableOptions->reason + "\nTry 'quiverly-replay --help'.");
        return unusable;
    }
    const auto& options = std::get<Options>(parsed);
    switch (options.wish) {
    case Options::Wish::help:
        return print(usage);
    case Options::Wish::version:
        return print(std::string("quiverly-replay ") + identity::version + '\n');
    case Options::Wish::replay:
        break;
    }
    return replay(options);
}

} // namespace
} // namespace quiverly

int main(int argc, char** argv) {
    std::signal(SIGPIPE, SIG_IGN); // a reader that went away is a failed write
    try {
        return quiverly::run(std::span(argv, static_cast<std::size_t>(argc)).subspan(1));
    } catch (const std::exception& failure) {
        quiverly::complain(failure.what());
        return quiverly::failed;
    }
}
