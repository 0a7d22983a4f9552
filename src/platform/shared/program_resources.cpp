#include "platform/shared/program_resources.h"

#include "platform/shared/program_file.h"

namespace quiverly {

std::vector<std::filesystem::path> programResourceFolders() {
    const std::filesystem::path program = programFile();
    if (program.empty()) return {};
    const std::filesystem::path prefix = program.parent_path().parent_path();
    return {prefix / "share" / "quiverly", prefix / "resources"};
}

} // namespace quiverly
