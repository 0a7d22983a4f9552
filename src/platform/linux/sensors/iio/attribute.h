#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include <tl/expected.hpp>

// Attributes of devices: files of the kernel's that hold one short line each. Errors are the system's own (errno).
namespace quiverly {

// The line without its end; cut after 255 bytes. Never waits for a writer where the file is a pipe.
tl::expected<std::string, std::error_code> attributeText(const std::filesystem::path& file);

// The whole text as a number, written as in the C locale whatever the user's is; nothing unless it is finite.
std::optional<double> attributeNumber(std::string_view text);

} // namespace quiverly
