#pragma once

#include <filesystem>
#include <string>

#include <tl/expected.hpp>

#include "clips/synthesis/Signal.h"

namespace quiverly::clips {

// Writes a 48 kHz stereo MP3 with the encoder's tag, by which a player starts and ends the clip to the sample, and an
// ID3 tag that names title, maker and licence. The reason for a failure names the file.
tl::expected<void, std::string> writeMp3(const std::filesystem::path& file, const Stereo& sound,
                                         const std::string& title);

// The clip as a player hears it. Fails, with a reason that names the file, when it cannot be read or is not stereo at
// 48 kHz.
tl::expected<Stereo, std::string> readMp3(const std::filesystem::path& file);

} // namespace quiverly::clips
