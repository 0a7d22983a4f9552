#include "tools/replay/Options.h"

#include "tools/recording/numbers.h"

namespace quiverly {

namespace {

tl::expected<std::string, std::string> folderName(const std::string& text) {
    if (text.empty()) return tl::make_unexpected("a folder needs a name");
    return text;
}

tl::expected<std::string, std::string> svgName(const std::string& text) {
    if (!text.ends_with(".svg")) return tl::make_unexpected("the name of a plot ends in .svg");
    return text;
}

constexpr char exitStatuses[] =
    "Exit status: 0 when the whole recording was replayed, 1 when the output could not be written\n"
    "or the system did not let the program work, 2 when the options or the recording cannot be used.";

} // namespace

tl::expected<Options, EarlyExit> parseOptions(std::span<const char* const> arguments) {
    Options options;
    CommandLine line("quiverly-replay",
                     "Replays a recording of sensor reports and prints what happens, one JSON object a line.",
                     exitStatuses);
    line.addValue("RECORDING", options.recording, anyText, "a file, or - for standard input");
    line.addFlag("--samples", options.samples, "print every sample, too");
    line.addValue("--pack", options.pack, anyText, "the stored sound pack, by the name of its folder, as pain");
    line.addValue("--threshold", options.threshold, decimalNumber, "the stored threshold, in g", "NUMBER");
    line.addValue("--resources", options.resources, folderName, "the folder that holds audio/<pack>/*.mp3", "DIR");
    line.addValue("--seed", options.seed, wholeNumber, "start of the random choices, 0 unless given", "N");
    line.addValue("--plot", options.plot, svgName, "draw the recording, too", "FILE.svg");
    return line.read(arguments).map([&] { return options; });
}

} // namespace quiverly
