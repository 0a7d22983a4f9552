#include "app/out_of_memory.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <exception>
#include <new>

namespace quiverly {

namespace {

std::terminate_handler former = nullptr; // set before there are other threads

[[noreturn]] void end() {
    try {
        if (const auto exception = std::current_exception()) std::rethrow_exception(exception);
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "%s: There is not enough memory.\n", program_invocation_short_name); // is not buffered
        ::_exit(1);
    } catch (...) { // the former handler says what it is
    }
    former();
    ::_exit(1);
}

} // namespace

void endWithoutMemory() {
    former = std::set_terminate(end);
}

} // namespace quiverly
