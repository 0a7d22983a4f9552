// quiverly-clips: makes the clips and the contact sheets that show them.

#include <cstdio>
#include <exception>
#include <span>
#include <string>

#include <QGuiApplication>

#include "clips/ClipMaker.h"
#include "clips/sheet/ContactSheet.h"
#include "tools/options/CommandLine.h"

namespace quiverly::clips {
namespace {

ExitStatus fail(const std::string& reason) {
    std::fprintf(stderr, "quiverly-clips: %s\n", reason.c_str());
    return failed;
}

ExitStatus makeClips(const std::string& folder) {
    const auto made = makeAllClips(folder);
    return made ? success : fail(made.error());
}

ExitStatus drawSheets(int argc, char** argv, const std::string& audio, const std::string& folder) {
    qputenv("QT_QPA_PLATFORM", "offscreen"); // texts are drawn, but no display is needed
    const QGuiApplication application(argc, argv);
    const auto markdown = writeContactSheets(audio, folder);
    if (!markdown) return fail(markdown.error());
    return std::fputs(markdown->c_str(), stdout) >= 0 && std::fflush(stdout) == 0
               ? success
               : fail("standard output could not be written");
}

ExitStatus run(int argc, char** argv) {
    std::string folder;
    std::string audio;
    CommandLine line("quiverly-clips", "Makes the clips, and the contact sheets that show them.",
                     "Exit status: 0 when all is done, 1 when a file could not be read or written or a clip could\n"
                     "not be made, 2 when the arguments cannot be used.");
    CommandLine& make = line.addCommand("make", "make every clip, as FOLDER/<pack>/<number>.mp3");
    make.addValue("FOLDER", folder, anyText, "where the clips go");
    CommandLine& sheets = line.addCommand("sheets", "draw every pack as FOLDER/<pack>.png");
    sheets.addValue("AUDIO", audio, anyText, "the folder of the clips");
    sheets.addValue("FOLDER", folder, anyText, "where the contact sheets go; the Markdown that shows them is printed");

    const auto read = line.read(std::span(argv, static_cast<std::size_t>(argc)).subspan(1));
    if (!read) return read.error().print();
    return make.isGiven() ? makeClips(folder) : drawSheets(argc, argv, audio, folder);
}

} // namespace
} // namespace quiverly::clips

int main(int argc, char** argv) {
    try {
        return quiverly::clips::run(argc, argv);
    } catch (const std::exception& failure) {
        return quiverly::clips::fail(failure.what());
    }
}
