#pragma once

#include <filesystem>
#include <string>

#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

// Writes a 48 kHz stereo MP3 with the encoder's tag, by which a player starts and ends the clip to the sample, and a
// tag that names title, maker and licence. Throws std::runtime_error with the file's name when it cannot.
void writeMp3(const std::filesystem::path& file, const Stereo& sound, const std::string& title);

// What a player hears of a clip. Throws std::runtime_error with the file's name when it cannot be read or is not stereo
// at 48 kHz.
Stereo readMp3(const std::filesystem::path& file);

} // namespace quiverly::clips
