#pragma once

#include <string>

#ifdef __APPLE__
#include <pthread.h>

#include <array>

#include <CoreFoundation/CoreFoundation.h>
#else
#include "support/apple/AppleServices.h"
#endif

namespace quiverly {

// The machine of a test that Macs run too, on which Quiverly's resources are those of the test program. Elsewhere it
// consists of stand-ins of Apple's frameworks.
#ifdef __APPLE__
class Mac {
public:
    // Of the calling thread.
    static std::string threadName() {
        std::array<char, 64> name = {};
        pthread_getname_np(pthread_self(), name.data(), name.size());
        return name.data();
    }

    // Takes the setting out of the user's defaults of this program.
    static void forget(const char* key) {
        const auto name = CFStringCreateWithCString(kCFAllocatorDefault, key, kCFStringEncodingUTF8);
        CFPreferencesSetAppValue(name, nullptr, kCFPreferencesCurrentApplication);
        CFRelease(name);
    }
};
#else
class Mac {
public:
    Mac() { services.resources = QUIVERLY_RESOURCES; }

    static std::string threadName() { return AppleServices::threadName(); }
    static void forget(const char* key) { AppleServices::current().defaults.erase(key); }

private:
    AppleServices services;
};
#endif

} // namespace quiverly
