#include <mach-o/dyld.h>

#include <string>

#include "support/apple/AppleFrameworks.h"

int _NSGetExecutablePath(char* buf, uint32_t* bufsize) {
    const std::string path = quiverly::AppleFrameworks::executablePath();
    const std::size_t length = path.size();
    if (*bufsize <= length) {
        *bufsize = static_cast<std::uint32_t>(length) + 1;
        return -1;
    }
    buf[path.copy(buf, length)] = '\0';
    return 0;
}
