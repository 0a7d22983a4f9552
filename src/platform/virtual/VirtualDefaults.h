#pragma once

#include <functional>
#include <map>
#include <string>

#include "platform/defaults.h"

namespace quiverly {

// The settings store of the virtual platform, in memory.
class VirtualDefaults {
public:
    std::map<std::string, defaults::Object> values;
    std::function<void(const std::string& key, const defaults::Object& value)> onWrite; // before each write
};

} // namespace quiverly
