#include "platform/random.h"

#include <random>

namespace quiverly {

std::size_t random::uniformIndex(std::size_t count) {
    static std::mt19937_64 generator{std::random_device{}()};
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(generator);
}

} // namespace quiverly
