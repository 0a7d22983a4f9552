// quiverly-import: makes a pack of the user's own sounds.

#include <cstdio>
#include <exception>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "platform/bundle.h"
#include "platform/shared/resource_folders.h"
#include "sound/SoundPack.h"
#include "tools/import/UserPack.h"
#include "tools/options/CommandLine.h"

namespace quiverly {
namespace {

namespace fs = std::filesystem;

using Outcome = tl::expected<void, std::string>;

ExitStatus fail(const std::string& reason) {
    std::fprintf(stderr, "quiverly-import: %s\n", reason.c_str());
    return failed;
}

ExitStatus print(const std::string& text) {
    return std::fputs(text.c_str(), stdout) >= 0 && std::fflush(stdout) == 0
               ? success
               : fail("standard output could not be written");
}

// The first folder of resources is the user's.
UserPack packOf(const std::string& name) {
    return {resourceFolders().front() / "audio" / name, bundle::precedes};
}

std::string described(const UserPack& pack) {
    const auto clips = pack.clips();
    std::string text = pack.folder().filename().string() + ": ";
    if (clips.empty()) return text + "the program's own clips\n";
    text += std::to_string(clips.size()) + (clips.size() == 1 ? " clip" : " clips") + " of yours\n";
    for (const fs::path& clip : clips) text += "  " + clip.string() + '\n';
    return text;
}

tl::expected<std::string, std::string> packName(const std::string& text) {
    if (!SoundPack::fromRawValue(text)) return tl::unexpected("there is no pack " + text);
    return text;
}

ExitStatus refuse(const std::string& reason) {
    return EarlyExit{.program = "quiverly-import",
                     .status = unusable,
                     .text = "quiverly-import: " + reason + "\nTry 'quiverly-import --help'.\n"}
        .print();
}

ExitStatus run(int argc, char** argv) {
    std::string name;
    std::vector<std::string> files;
    bool append = false;
    bool list = false;
    bool remove = false;
    CommandLine line(
        "quiverly-import", "Makes a sound pack of your own sound files, or takes it away again.",
        "Without --append the files take the place of your clips of that pack. The files themselves stay\n"
        "as they are. WAV, FLAC, Ogg, Opus, MP3, AIFF and what else libsndfile decodes can be read.\n"
        "Exit status: 0 when all is done, 1 when a file could not be read or written, 2 when the arguments\n"
        "cannot be used.");
    line.addValue("PACK", name, packName, "pain, sexy, halo or lizard");
    line.addValues("FILE", files, "sounds, in the order in which they are to play");
    line.addFlag("--append", append, "add to your clips of the pack");
    line.addFlag("--list", list, "show your clips of the pack");
    line.addFlag("--remove", remove, "remove your clips of the pack: the program's own play again");

    const auto read = line.read(std::span(argv, static_cast<std::size_t>(argc)).subspan(1));
    if (!read) return read.error().print();
    if (static_cast<int>(append) + static_cast<int>(list) + static_cast<int>(remove) > 1)
        return refuse("--append, --list and --remove cannot be used together.");
    if ((list || remove) && !files.empty()) return refuse("--list and --remove take no files.");
    if (!list && !remove && files.empty()) return refuse("FILE is required.");

    UserPack pack = packOf(name);
    const std::vector<fs::path> sounds(files.begin(), files.end());
    const auto done = list ? Outcome{} : remove ? pack.remove() : append ? pack.append(sounds) : pack.replace(sounds);
    return done ? print(described(pack)) : fail(done.error());
}

} // namespace
} // namespace quiverly

int main(int argc, char** argv) {
    try {
        return quiverly::run(argc, argv);
    } catch (const std::exception& failure) {
        return quiverly::fail(failure.what());
    }
}
