#include "support/apple/AppleServices.h"

namespace quiverly {

namespace {
AppleServices* instance = nullptr;
}

AppleServices::AppleServices() {
    instance = this;
}

AppleServices::~AppleServices() {
    instance = nullptr;
}

AppleServices& AppleServices::current() {
    return *instance;
}

} // namespace quiverly
