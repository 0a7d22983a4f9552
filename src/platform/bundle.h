#pragma once

#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

// The resources that come with the program, read-only. Main thread.
namespace quiverly::bundle {

// The files of a resource folder whose names have that extension ("mp3", exactly as written), in no particular order;
// nothing when there is no such folder. Hidden files and anything that is not a regular file do not count.
std::optional<std::vector<std::filesystem::path>> files(std::string_view extension,
                                                        const std::filesystem::path& subfolder);

// The resource name.type at the top of the resources; nothing when there is none.
std::optional<std::filesystem::path> resource(std::string_view name, std::string_view type);

// Whether file name `a` comes before `b` as file browsers order them: runs of digits by their value, letters without
// regard to case, by the user's locale; in the order of bytes where the system has no data to order names by.
bool precedes(std::string_view a, std::string_view b);

} // namespace quiverly::bundle
