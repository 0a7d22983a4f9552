#include "tools/recording/InputFile.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

#include "tools/recording/try_again.h"

namespace quiverly {

namespace {

std::error_code lastError() {
    return {errno, std::generic_category()};
}

} // namespace

InputFile::InputFile(const std::string& name)
    : descriptor(name == "-" ? STDIN_FILENO : open(name.c_str(), O_RDONLY | O_CLOEXEC)) {
    if (descriptor < 0) failure = lastError();
}

InputFile::~InputFile() {
    if (descriptor > STDERR_FILENO) close(descriptor);
}

std::size_t InputFile::read(std::span<char> chunk) {
    if (failure) return 0;
    ssize_t count = 0;
    do {
        count = ::read(descriptor, chunk.data(), chunk.size());
    } while (count < 0 && mayTryAgain(descriptor, POLLIN));
    if (count < 0) failure = lastError();
    return count > 0 ? static_cast<std::size_t>(count) : 0;
}

} // namespace quiverly
