#pragma once

#include <memory>
#include <type_traits>

#include <CoreFoundation/CoreFoundation.h>

namespace quiverly {

struct ReleaseCFObject {
    void operator()(CFTypeRef object) const noexcept { CFRelease(object); }
};

// Owns one reference to a CoreFoundation object: what a function with Create or Copy in its name gave out, never what
// one with Get in its name did.
template<class Reference>
using CFHandle = std::unique_ptr<std::remove_pointer_t<Reference>, ReleaseCFObject>;

} // namespace quiverly
