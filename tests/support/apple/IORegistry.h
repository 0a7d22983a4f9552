#pragma once

#include <cstddef>

#include <IOKit/IOKitLib.h>

namespace quiverly {

// Index in the virtual registry of the service that the stand-ins gave out under that name.
std::size_t serviceNamed(io_service_t name);

} // namespace quiverly
