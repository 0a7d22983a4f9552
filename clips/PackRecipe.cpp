#include "clips/PackRecipe.h"

namespace quiverly::clips {

std::filesystem::path PackRecipe::fileOf(std::size_t index) const {
    return std::filesystem::path(pack.folder()) / (std::to_string(index + 1) + ".mp3");
}

} // namespace quiverly::clips
