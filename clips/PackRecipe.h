#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <tl/expected.hpp>

#include "clips/synthesis/RandomNumbers.h"
#include "clips/synthesis/Signal.h"
#include "sound/SoundPack.h"

namespace quiverly::clips {

// How one clip is made, up to its mastering.
struct ClipRecipe {
    std::string title;
    std::uint64_t seed; // of the random numbers that compose() is given
    std::function<tl::expected<Stereo, std::string>(RandomNumbers&)> compose; // the sound, or why there is none
    std::string kind = {};    // of voice, such as "scream"; empty where no voice is heard by itself
    std::string speaker = {}; // whose voice
};

// How the clips of one pack are made, in playing order.
struct PackRecipe {
    SoundPack pack;
    std::vector<ClipRecipe> clips; // in a pack that escalates, from the mildest to the strongest

    // The clip's file, below the folder of all packs: the first clip of pain is pain/1.mp3.
    std::filesystem::path fileOf(std::size_t index) const;
};

PackRecipe painRecipe();
PackRecipe sexyRecipe();
PackRecipe haloRecipe();
PackRecipe lizardRecipe();

// Every pack, in the order in which they are offered.
inline std::vector<PackRecipe> allPackRecipes() {
    return {painRecipe(), sexyRecipe(), haloRecipe(), lizardRecipe()};
}

} // namespace quiverly::clips
