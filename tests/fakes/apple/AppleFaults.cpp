#include "fakes/apple/AppleFaults.h"

namespace quiverly {

namespace {
const AppleFaults* instance = nullptr;
}

AppleFaults::AppleFaults() {
    instance = this;
}

AppleFaults::~AppleFaults() {
    instance = nullptr;
}

bool AppleFaults::occurs(bool AppleFaults::*fault) {
    return instance != nullptr && instance->*fault;
}

bool AppleFaults::deviceHasGone() {
    return instance != nullptr && instance->deviceIsGone;
}

std::vector<std::uint8_t> AppleFaults::reportAfterUnscheduling() {
    return instance != nullptr ? instance->delayedReport : std::vector<std::uint8_t>{};
}

} // namespace quiverly
