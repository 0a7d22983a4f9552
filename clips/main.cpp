// quiverly-clips: makes the clips and the contact sheets that show them.

#include <cstdio>
#include <exception>
#include <span>
#include <string>

#include <QGuiApplication>

#include "clips/ClipMaker.h"
#include "clips/Minute.h"
#include "clips/sheet/ContactSheet.h"
#include "tools/options/CommandLine.h"

namespace quiverly::clips {
namespace {

ExitStatus fail(const std::string& reason) {
    std::fprintf(stderr, "quiverly-clips: %s\n", reason.c_str());
    return failed;
}

tl::expected<std::string, std::string> packName(const std::string& text) {
    if (!SoundPack::fromRawValue(text)) return tl::unexpected("there is no pack " + text);
    return text;
}

ExitStatus makeClips(const std::string& folder, const std::string& only) {
    for (const PackRecipe& recipe : allPackRecipes()) {
        if (!only.empty() && recipe.pack.folder() != only) continue;
        if (const auto made = makePack(recipe, folder); !made) return fail(made.error());
    }
    return success;
}

ExitStatus print(const std::string& text) {
    return std::fputs(text.c_str(), stdout) >= 0 && std::fflush(stdout) == 0
               ? success
               : fail("standard output could not be written");
}

// A line for each clip: its file, its kind of voice, whose voice, and its title, with tabs between them.
ExitStatus listClips() {
    std::string lines;
    for (const PackRecipe& recipe : allPackRecipes()) {
        for (std::size_t index = 0; index < recipe.clips.size(); ++index) {
            const ClipRecipe& clip = recipe.clips[index];
            lines += recipe.fileOf(index).string() + '\t' + clip.kind + '\t' + clip.speaker + '\t' + clip.title + '\n';
        }
    }
    return print(lines);
}

ExitStatus drawSheets(int argc, char** argv, const std::string& audio, const std::string& folder) {
    qputenv("QT_QPA_PLATFORM", "offscreen"); // texts are drawn, but no display is needed
    const QGuiApplication application(argc, argv);
    const auto markdown = writeContactSheets(audio, folder);
    return markdown ? print(*markdown) : fail(markdown.error());
}

ExitStatus writeMinutes(const std::string& audio, const std::string& folder) {
    for (const PackRecipe& recipe : allPackRecipes()) {
        const std::filesystem::path file = std::filesystem::path(folder) / (std::string(recipe.pack.folder()) + ".wav");
        if (const auto written = writeMinute(recipe, audio, file); !written) return fail(written.error());
    }
    return success;
}

ExitStatus run(int argc, char** argv) {
    std::string folder;
    std::string audio;
    std::string only;
    CommandLine line("quiverly-clips", "Makes the clips, and the contact sheets that show them.",
                     "Exit status: 0 when all is done, 1 when a file could not be read or written or a clip could\n"
                     "not be made, 2 when the arguments cannot be used.");
    CommandLine& make = line.addCommand("make", "make every clip, as FOLDER/<pack>/<number>.mp3");
    make.addValue("FOLDER", folder, anyText, "where the clips go");
    make.addValue("--pack", only, packName, "make the clips of one pack only", "PACK");
    const CommandLine& list = line.addCommand("list", "list every clip: file, kind of voice, speaker, title");
    CommandLine& sheets = line.addCommand("sheets", "draw every pack as FOLDER/<pack>.png");
    sheets.addValue("AUDIO", audio, anyText, "the folder of the clips");
    sheets.addValue("FOLDER", folder, anyText, "where the contact sheets go; the Markdown that shows them is printed");
    CommandLine& minutes = line.addCommand("minutes", "write a minute of every pack as FOLDER/<pack>.wav");
    minutes.addValue("AUDIO", audio, anyText, "the folder of the clips");
    minutes.addValue("FOLDER", folder, anyText, "where the sounds go");

    const auto read = line.read(std::span(argv, static_cast<std::size_t>(argc)).subspan(1));
    if (!read) return read.error().print();
    if (list.isGiven()) return listClips();
    if (minutes.isGiven()) return writeMinutes(audio, folder);
    return make.isGiven() ? makeClips(folder, only) : drawSheets(argc, argv, audio, folder);
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
