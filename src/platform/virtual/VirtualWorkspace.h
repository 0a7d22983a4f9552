#pragma once

#include <functional>
#include <optional>
#include <string>

namespace quiverly {

// The desktop around the virtual platform: shows nothing, and tells who asked for what.
class VirtualWorkspace {
public:
    std::optional<std::string> sensorAccessPage =
        "x-apple.systempreferences:com.apple.preference.security?Privacy_ListenEvent";
    std::function<void(const std::string& url)> onOpen;
};

} // namespace quiverly
