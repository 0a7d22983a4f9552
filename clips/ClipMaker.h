#pragma once

#include <filesystem>
#include <string>

#include <tl/expected.hpp>

#include "clips/PackRecipe.h"

namespace quiverly::clips {

// Make one clip, those of one pack, or all of them, from nothing: each is composed, mastered and written to its file
// below the folder. The reason for a failure names the clip's file.
tl::expected<void, std::string> makeClip(const PackRecipe& recipe, std::size_t index,
                                         const std::filesystem::path& folder);
tl::expected<void, std::string> makePack(const PackRecipe& recipe, const std::filesystem::path& folder);
tl::expected<void, std::string> makeAllClips(const std::filesystem::path& folder);

} // namespace quiverly::clips
