#pragma once

#ifndef __APPLE__
#include "platform/virtual/VirtualPlatform.h"
#endif

namespace quiverly {

// The machine of a test that Macs run too, as far as sensors are concerned; elsewhere it consists of stand-ins.
#ifdef __APPLE__
struct MacWithoutSensor {};
#else
using MacWithoutSensor = VirtualPlatform;
#endif

} // namespace quiverly
