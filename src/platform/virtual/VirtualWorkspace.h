#pragma once

#include <functional>
#include <optional>
#include <string>

#include "platform/shared/input_monitoring.h"

namespace quiverly {

// The desktop around the virtual platform: shows nothing, and tells who asked for what.
class VirtualWorkspace {
public:
    std::optional<std::string> sensorAccessPage = inputMonitoringPage;
    std::function<void(const std::string& url)> onOpen;
};

} // namespace quiverly
