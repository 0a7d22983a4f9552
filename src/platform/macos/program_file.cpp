#include "platform/shared/program_file.h"

#include <cstdint>
#include <string>
#include <system_error>

#include <mach-o/dyld.h>

namespace quiverly {

std::filesystem::path programFile() {
    std::uint32_t size = 0; // with the zero at the end
    _NSGetExecutablePath(nullptr, &size);
    std::string path(size, '\0');
    _NSGetExecutablePath(path.data(), &size);
    std::error_code unknown;
    return std::filesystem::canonical(path.c_str(), unknown);
}

} // namespace quiverly
