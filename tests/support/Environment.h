#pragma once

#include <cstdlib>

namespace quiverly {

// Sets a variable of this process and of those it starts, or with null takes it away. Not while another thread may read
// it.
inline void setVariable(const char* name, const char* value) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): by contract
    value != nullptr ? ::setenv(name, value, 1) : ::unsetenv(name);
}

} // namespace quiverly
