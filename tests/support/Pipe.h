#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>

#include "sockets/FileDescriptor.h"

namespace quiverly {

// The two ends of a pipe.
struct Pipe {
    explicit Pipe(int flags = 0) {
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC | flags) != 0) std::abort();
        readEnd = FileDescriptor(ends[0]);
        writeEnd = FileDescriptor(ends[1]);
    }

    FileDescriptor readEnd, writeEnd;
};

} // namespace quiverly
