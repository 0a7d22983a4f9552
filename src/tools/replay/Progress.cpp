#include "tools/replay/Progress.h"

#include <cstdio>

#include <unistd.h>

namespace quiverly {

namespace {
constexpr std::int64_t linesBetween = 100'000; // about ten a second on a slow machine
}

Progress::Progress() : onTerminal(isatty(STDERR_FILENO) == 1), sharedWithOutput(isatty(STDOUT_FILENO) == 1) {}

void Progress::advance(double seconds) {
    ++lines;
    if (!onTerminal || lines % linesBetween != 0) return;
    std::fprintf(stderr, "\r%lld lines, %.0f s of recording", static_cast<long long>(lines), seconds);
    visible = true;
}

void Progress::clear() {
    if (visible) std::fputs("\r\033[K", stderr);
    visible = false;
}

void Progress::clearForOutput() {
    if (sharedWithOutput) clear();
}

} // namespace quiverly
