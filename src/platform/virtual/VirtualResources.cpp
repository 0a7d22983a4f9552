#include "platform/shared/resource_folders.h"
#include "platform/virtual/VirtualPlatform.h"

namespace quiverly {

std::vector<std::filesystem::path> resourceFolders() {
    return VirtualPlatform::current().resources.folders;
}

std::string nameOrderLocale() {
    return "en";
}

} // namespace quiverly
