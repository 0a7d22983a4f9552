#include "platform/random.h"

#include "platform/virtual/VirtualPlatform.h"

namespace quiverly {

std::size_t random::uniformIndex(std::size_t count) {
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(VirtualPlatform::current().random.generator);
}

} // namespace quiverly
