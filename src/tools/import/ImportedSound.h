#pragma once

#include <filesystem>
#include <string>

#include <tl/expected.hpp>

namespace quiverly {

// Reads a sound file of any kind that libsndfile decodes and writes it as a clip: stereo at 48 kHz, from 5 ms before
// its first audible moment to its last one, at most half a minute, faded at its end, and as loud as the program's own
// clips unless its peaks forbid it. The reason for a failure begins with the name of the file that caused it.
tl::expected<void, std::string> importSound(const std::filesystem::path& from, const std::filesystem::path& clip);

} // namespace quiverly
