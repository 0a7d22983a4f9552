#include "support/apple/AppleServices.h"

#include <cstdio>
#include <cstdlib>

#include "support/apple/AppleRuntime.h"

namespace quiverly {

namespace {
AppleServices* instance = nullptr;
}

AppleServices::AppleServices() : pool(objc_autoreleasePoolPush()) {
    instance = this;
}

AppleServices::~AppleServices() {
    objc_autoreleasePoolPop(pool);
    if (const std::size_t left = apple_runtime::objectsAlive(); left > 0) {
        std::fprintf(stderr, "stand-ins: %zu objects were not released\n", left);
        std::abort();
    }
    instance = nullptr;
}

AppleServices& AppleServices::current() {
    return *instance;
}

std::string& AppleServices::threadName() {
    thread_local std::string name;
    return name;
}

} // namespace quiverly
