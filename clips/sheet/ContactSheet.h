#pragma once

#include <filesystem>
#include <string>

namespace quiverly::clips {

// Draws every clip below the folder `audio` small (waveform above, spectrogram below) into folder/<pack>/<number>.png
// and returns the tables that show them with their measures, in Markdown for a page beside that folder. Throws
// std::runtime_error when a clip cannot be read or a picture cannot be written.
std::string contactSheet(const std::filesystem::path& audio, const std::filesystem::path& folder);

} // namespace quiverly::clips
