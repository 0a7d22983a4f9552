#pragma once

#include <cstddef>

namespace quiverly::random {

// A uniformly random index below `count`, which is at least 1. Main thread.
std::size_t uniformIndex(std::size_t count);

} // namespace quiverly::random
