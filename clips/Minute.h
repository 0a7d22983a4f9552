#pragma once

#include <filesystem>
#include <string>

#include <tl/expected.hpp>

#include "clips/PackRecipe.h"

namespace quiverly::clips {

// A pack to listen to: its clips one after the other, with equal pauses, in a minute, as a WAV file. The reason for a
// failure names the file that could not be read or written.
tl::expected<void, std::string> writeMinute(const PackRecipe& recipe, const std::filesystem::path& audio,
                                            const std::filesystem::path& file);

} // namespace quiverly::clips
