// quiverly-replay: runs the engine on a recording of sensor reports and prints what happens.

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <span>
#include <string>
#include <system_error>

#include "platform/shared/program_resources.h"
#include "platform/virtual/VirtualPlatform.h"
#include "tools/plot/svg.h"
#include "tools/recording/Recording.h"
#include "tools/replay/EventOutput.h"
#include "tools/replay/EventPrinter.h"
#include "tools/replay/Options.h"
#include "tools/replay/Progress.h"
#include "tools/replay/Replay.h"
#include "tools/replay/utf8.h"

namespace quiverly {
namespace {

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

bool store(const Plot& plot, const std::string& name) {
    std::ofstream file(name);
    file << svg(plot);
    file.close();
    if (file) return true;
    complain(name + ": " + std::generic_category().message(errno));
    return false;
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
    Plot plot;
    plot.title = validUtf8(std::filesystem::path(options.recording).filename().string());
    Replay replay(platform, events, options.samples ? Replay::Samples::printed : Replay::Samples::hidden,
                  options.plot ? &plot : nullptr);

    auto line = recording.next();
    for (; line && *line && !output.error(); line = recording.next()) {
        replay.perform(**line);
        progress.advance((*line)->seconds);
    }
    if (line) replay.finish();

    progress.clear();
    const ExitStatus status = finish(output, line ? success : unusable);
    if (!line) complain(line.error());
    if (options.plot && !store(plot, *options.plot)) return status == success ? failed : status;
    return status;
}

} // namespace
} // namespace quiverly

int main(int argc, char** argv) {
    std::signal(SIGPIPE, SIG_IGN); // a reader that went away is a failed write
    try {
        const auto options = quiverly::parseOptions(std::span(argv, static_cast<std::size_t>(argc)).subspan(1));
        return options ? quiverly::replay(*options) : options.error().print();
    } catch (const std::exception& failure) {
        quiverly::complain(failure.what());
        return quiverly::failed;
    }
}
