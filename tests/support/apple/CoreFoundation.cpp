#include <CoreFoundation/CoreFoundation.h>

#include <cmath>
#include <cstring>
#include <memory>
#include <mutex>

#include "support/apple/AppleFrameworks.h"
#include "support/apple/AppleObject.h"

using quiverly::AppleFrameworks;
using quiverly::VirtualPlatform;
using quiverly::VirtualThreads;

namespace {

const AppleObject& objectOf(CFTypeRef reference) {
    return *static_cast<const AppleObject*>(reference);
}

const __CFString defaultMode{"kCFRunLoopDefaultMode"};

} // namespace

const CFAllocatorRef kCFAllocatorDefault = nullptr;
const CFRunLoopMode kCFRunLoopDefaultMode = &defaultMode;

CFTypeID CFGetTypeID(CFTypeRef object) {
    return objectOf(object).type;
}

void CFRelease(CFTypeRef object) {
    if (object == nullptr) VirtualPlatform::fault("CFRelease of null");
    if (--objectOf(object).references > 0) return;
    delete &objectOf(object);
    VirtualPlatform::current().registry.lend(-1);
}

CFStringRef CFStringCreateWithCString(CFAllocatorRef, const char* text, CFStringEncoding encoding) {
    if (encoding != kCFStringEncodingUTF8) VirtualPlatform::fault("a text of another encoding than UTF-8");
    if (AppleFrameworks::occurs(&AppleFrameworks::noStrings)) return nullptr;
    return AppleObject::create<__CFString>(text);
}

CFTypeID CFNumberGetTypeID() {
    return AppleObject::number;
}

CFNumberRef CFNumberCreate(CFAllocatorRef, CFNumberType type, const void* value) {
    if (type != kCFNumberSInt32Type) VirtualPlatform::fault("a number that is not a 32-bit one");
    if (AppleFrameworks::occurs(&AppleFrameworks::noNumbers)) return nullptr;
    std::int32_t number = 0;
    std::memcpy(&number, value, sizeof number);
    return AppleObject::create<__CFNumber>(std::int64_t{number});
}

Boolean CFNumberIsFloatType(CFNumberRef number) {
    return std::holds_alternative<double>(number->value);
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value) {
    if (type != kCFNumberSInt64Type) VirtualPlatform::fault("an integer property is read with fewer than 64 bits");
    const auto* integer = std::get_if<std::int64_t>(&number->value);
    const double real = integer != nullptr ? 0.0 : std::get<double>(number->value);
    const std::int64_t converted = integer != nullptr ? *integer : static_cast<std::int64_t>(real);
    std::memcpy(value, &converted, sizeof converted);
    return integer != nullptr || std::trunc(real) == real;
}

const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key) {
    const auto found = dictionary->values.find(static_cast<CFStringRef>(key)->text);
    return found == dictionary->values.end() ? nullptr : found->second;
}

CFRunLoopRef CFRunLoopGetCurrent() {
    static std::mutex mutex;
    static std::map<const quiverly::Thread*, std::unique_ptr<__CFRunLoop>> runLoops;
    const std::lock_guard lock(mutex);
    auto& runLoop = runLoops[VirtualThreads::current()];
    if (!runLoop) runLoop = std::make_unique<__CFRunLoop>();
    return runLoop.get();
}

CFRunLoopRunResult CFRunLoopRunInMode(CFRunLoopMode mode, CFTimeInterval seconds, Boolean returnAfterSourceHandled) {
    AppleFrameworks::tell({mode->text, seconds, returnAfterSourceHandled != 0});
    if (CFRunLoopGetCurrent()->sources == 0) return kCFRunLoopRunFinished;
    return VirtualPlatform::current().registry.runLoop(seconds) ? kCFRunLoopRunHandledSource : kCFRunLoopRunTimedOut;
}
