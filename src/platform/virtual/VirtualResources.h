#pragma once

#include <filesystem>
#include <vector>

namespace quiverly {

// Where the virtual platform finds its resources: folders that the test or tool names. File names are ordered in
// English whatever the machine's locale.
class VirtualResources {
public:
    std::vector<std::filesystem::path> folders; // the first that has what is asked for answers
};

} // namespace quiverly
