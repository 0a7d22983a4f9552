#pragma once

#include <filesystem>

// What a platform supplies to programs that find their resources by their own place.
namespace quiverly {

// The file that the running program was started from, links resolved. Empty when the system does not say.
std::filesystem::path programFile();

} // namespace quiverly
