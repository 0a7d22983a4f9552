#include "clips/ClipMaker.h"

#include "clips/Mp3.h"
#include "clips/synthesis/Mastering.h"

namespace quiverly::clips {

namespace {

constexpr double meanLoudness = -16; // LUFS, momentary
constexpr double loudnessRise = 2.4; // LU from the first to the last clip of a pack that escalates

double loudnessOf(const PackRecipe& recipe, std::size_t index) {
    if (!recipe.pack.escalates()) return meanLoudness;
    const double along = static_cast<double>(index) / static_cast<double>(recipe.clips.size() - 1);
    return meanLoudness + loudnessRise * (along - 0.5);
}

} // namespace

tl::expected<void, std::string> makeClip(const PackRecipe& recipe, std::size_t index,
                                         const std::filesystem::path& folder) {
    const ClipRecipe& clip = recipe.clips[index];
    const std::filesystem::path file = folder / recipe.fileOf(index);
    std::error_code error;
    std::filesystem::create_directories(file.parent_path(), error);
    if (error) return tl::unexpected(file.parent_path().string() + ": " + error.message());

    RandomNumbers random(clip.seed);
    auto sound = clip.compose(random);
    if (!sound) return tl::unexpected(file.string() + ": " + sound.error());
    return writeMp3(file, mastered(*std::move(sound), loudnessOf(recipe, index)), clip.title);
}

tl::expected<void, std::string> makePack(const PackRecipe& recipe, const std::filesystem::path& folder) {
    for (std::size_t index = 0; index < recipe.clips.size(); ++index) {
        if (auto made = makeClip(recipe, index, folder); !made) return made;
    }
    return {};
}

tl::expected<void, std::string> makeAllClips(const std::filesystem::path& folder) {
    for (const PackRecipe& recipe : allPackRecipes()) {
        if (auto made = makePack(recipe, folder); !made) return made;
    }
    return {};
}

} // namespace quiverly::clips
