#include "clips/Pack.h"

#include "clips/Mp3.h"
#include "clips/synthesis/Mastering.h"

namespace quiverly::clips {

namespace {

constexpr double meanLoudness = -16; // LUFS, momentary
constexpr double loudnessRise = 2.4; // LU from the first to the last clip of a pack that escalates

double wantedLoudness(const Pack& pack, std::size_t index) {
    if (!pack.name.escalates()) return meanLoudness;
    const double along = static_cast<double>(index) / static_cast<double>(pack.clips.size() - 1);
    return meanLoudness + loudnessRise * (along - 0.5);
}

} // namespace

std::vector<Pack> allPacks() {
    return {painPack(), sexyPack(), haloPack(), lizardPack()};
}

void make(const Pack& pack, std::size_t index, const std::filesystem::path& folder) {
    const Clip& clip = pack.clips[index];
    const std::filesystem::path file = folder / fileOf(pack, index);
    Random random(clip.seed);
    std::filesystem::create_directories(file.parent_path());
    writeMp3(file, mastered(clip.compose(random), wantedLoudness(pack, index)), clip.title);
}

void makeAll(const std::filesystem::path& folder) {
    for (const Pack& pack : allPacks()) {
        for (std::size_t index = 0; index < pack.clips.size(); ++index) make(pack, index, folder);
    }
}

std::filesystem::path fileOf(const Pack& pack, std::size_t index) {
    return std::filesystem::path(pack.name.folder()) / (std::to_string(index + 1) + ".mp3");
}

} // namespace quiverly::clips
