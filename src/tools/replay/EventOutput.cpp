#include "tools/replay/EventOutput.h"

#include <cerrno>
#include <string_view>

#include <unistd.h>

#include "tools/recording/try_again.h"

namespace quiverly {

void EventOutput::flush() {
    std::string_view rest = text;
    while (!rest.empty() && !failure) {
        const ssize_t count = write(STDOUT_FILENO, rest.data(), rest.size());
        if (count >= 0) {
            rest.remove_prefix(static_cast<std::size_t>(count));
        } else if (!mayTryAgain(STDOUT_FILENO, POLLOUT)) {
            failure = {errno, std::generic_category()};
        }
    }
    text.clear();
}

} // namespace quiverly
