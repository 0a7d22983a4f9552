// A workspace that opens nothing, for tests on somebody's desktop.

#include "platform/workspace.h"

namespace quiverly {

std::optional<std::string> workspace::sensorAccessPage() {
    return std::nullopt;
}

void workspace::openURL(const std::string&) {}

} // namespace quiverly
