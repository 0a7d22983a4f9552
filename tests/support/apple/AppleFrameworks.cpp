#include "support/apple/AppleFrameworks.h"

namespace quiverly {

namespace {
AppleFrameworks* instance = nullptr;
}

AppleFrameworks::AppleFrameworks() {
    instance = this;
}

AppleFrameworks::~AppleFrameworks() {
    instance = nullptr;
}

std::optional<RunLoopRun> AppleFrameworks::lastRun() const {
    const std::lock_guard lock(mutex);
    return run;
}

bool AppleFrameworks::occurs(FaultMember fault) {
    return instance != nullptr && instance->*fault;
}

std::vector<std::uint8_t> AppleFrameworks::reportAfterUnscheduling() {
    return instance != nullptr ? instance->delayedReport : std::vector<std::uint8_t>{};
}

std::filesystem::path AppleFrameworks::executablePath() {
    return instance != nullptr ? instance->executable : std::filesystem::path();
}

void AppleFrameworks::tell(const RunLoopRun& run) {
    if (instance == nullptr) return;
    const std::lock_guard lock(instance->mutex);
    instance->run = run;
}

} // namespace quiverly
