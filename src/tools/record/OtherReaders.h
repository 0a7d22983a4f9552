#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <vector>

namespace quiverly {

// A program that has a file open.
struct OtherReader {
    pid_t process;
    std::string name; // of the program
};

// The other programs of this user that have that file open, by what `proc` says.
std::vector<OtherReader> otherReaders(const std::filesystem::path& file, const std::filesystem::path& proc = "/proc");

} // namespace quiverly
