#include "platform/shared/program_file.h"

#include <system_error>

namespace quiverly {

std::filesystem::path programFile() {
    std::error_code unknown;
    return std::filesystem::read_symlink("/proc/self/exe", unknown);
}

} // namespace quiverly
