#pragma once

#include <filesystem>
#include <string>

#include <tl/expected.hpp>

#include <QImage>

#include "clips/PackRecipe.h"

namespace quiverly::clips {

// One picture of a whole pack: each clip with its number, its title, its strength and what was measured for it. The
// clips are read from their files below `audio`; fails when one cannot be read. Needs a QGuiApplication.
tl::expected<QImage, std::string> contactSheet(const PackRecipe& recipe, const std::filesystem::path& audio);

// Writes each pack's contact sheet into the folder, as <pack>.png, and returns the section of Markdown that shows them
// on a page beside the folder. The reason for a failure names the file that could not be read or written.
tl::expected<std::string, std::string> writeContactSheets(const std::filesystem::path& audio,
                                                          const std::filesystem::path& folder);

} // namespace quiverly::clips
