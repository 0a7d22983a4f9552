#include "tools/replay/EventOutput.h"

#include <cerrno>
#include <cstdio>

namespace quiverly {

void EventOutput::flush() {
    if (failure) return;
    const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
    if (!written) failure = {errno, std::generic_category()};
    text.clear();
}

} // namespace quiverly
