#include "platform/folders/program_resources.h"

#include <system_error>

namespace quiverly {

std::vector<std::filesystem::path> programResourceFolders() {
    std::error_code unknown;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", unknown);
    if (unknown) return {};
    const std::filesystem::path prefix = program.parent_path().parent_path();
    return {prefix / "share" / "quiverly", prefix / "resources"};
}

} // namespace quiverly
