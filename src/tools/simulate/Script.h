#pragma once

#include <deque>
#include <filesystem>
#include <variant>

#include "tools/simulate/Command.h"

namespace quiverly {

using Script = std::deque<command::Timed>;

// The timed commands of a file, one a line, their times never decreasing; or "FILE:LINE: what is wrong".
std::variant<Script, command::Mistake> readScript(const std::filesystem::path& file);

} // namespace quiverly
