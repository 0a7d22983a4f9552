#pragma once

#include <sys/types.h>

#include <array>
#include <cstddef>
#include <filesystem>
#include <span>

#include "sockets/FileDescriptor.h"

namespace quiverly {

// A sound file, read through a buffer. One thread at a time.
//
// A decoder that searches a hostile file for sound could read on for seconds. So the file seems to end once more has
// been read for one piece of sound than an honest file needs.
class ClipFile {
public:
    static constexpr std::size_t bufferSize = 4096;
    static constexpr int mostReads = 8; // of a buffer, for one piece

    // Reads nothing yet. A file that is not a regular one seems to be empty: a pipe or a device could make us wait.
    explicit ClipFile(const std::filesystem::path& path);

    // From now on is read for another piece.
    void beginPiece() { reads = 0; }

    // How many bytes; 0 at the end.
    std::size_t read(std::span<std::byte> bytes);

    // As lseek() does; the new position, or -1.
    off_t seek(off_t offset, int whence);

private:
    std::span<const std::byte> buffered();
    void fill();

    FileDescriptor file;
    off_t position = 0;
    off_t bufferStart = 0; // position in the file
    std::size_t bufferFill = 0;
    int reads = 0;
    std::array<std::byte, bufferSize> buffer;
};

} // namespace quiverly
