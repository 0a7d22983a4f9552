#include "platform/virtual/VirtualPlatform.h"

#include <cstdio>
#include <cstdlib>

namespace quiverly {

namespace {
VirtualPlatform* instance = nullptr;
}

VirtualPlatform::VirtualPlatform() {
    if (instance != nullptr) fault("two of them at once");
    instance = this;
}

VirtualPlatform::~VirtualPlatform() {
    if (threads.live() != 0) fault("a thread was not waited for");
    if (registry.lentObjects() != 0) fault("a service, device or walk was not released");
    if (audio.lentPlayers() != 0) fault("an audio player was not released");
    instance = nullptr;
}

VirtualPlatform& VirtualPlatform::current() {
    if (instance == nullptr) fault("a port was called while there is none");
    return *instance;
}

void VirtualPlatform::fault(const std::string& what) {
    std::fprintf(stderr, "virtual platform: %s\n", what.c_str());
    std::abort();
}

} // namespace quiverly
