#include "platform/virtual/VirtualWorkspace.h"

#include "platform/virtual/VirtualPlatform.h"
#include "platform/workspace.h"

namespace quiverly {

std::optional<std::string> workspace::sensorAccessPage() {
    return VirtualPlatform::current().workspace.sensorAccessPage;
}

void workspace::openURL(const std::string& url) {
    const auto& onOpen = VirtualPlatform::current().workspace.onOpen;
    if (onOpen) onOpen(url);
}

} // namespace quiverly
