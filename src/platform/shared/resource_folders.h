#pragma once

#include <filesystem>
#include <string>
#include <vector>

// What a platform that keeps its resources in plain folders supplies; bundle.cpp beside this file does the rest.
namespace quiverly {

// The folders that hold resources. The first that has what is asked for answers; nothing is merged.
std::vector<std::filesystem::path> resourceFolders();

// ICU name of the locale whose rules order file names, such as "en".
std::string nameOrderLocale();

} // namespace quiverly
