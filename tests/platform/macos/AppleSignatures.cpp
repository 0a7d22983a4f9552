// What the macOS code takes for granted about Apple's declarations. Compiles, or does not, against the stand-ins and
// against the frameworks themselves alike.

#include <cstdint>
#include <type_traits>

#include <CoreFoundation/CoreFoundation.h>
#include <IOKit/IOKitLib.h>
#include <IOKit/hid/IOHIDDevice.h>
#include <mach-o/dyld.h>
#include <pthread.h>

#ifdef __OBJC__
#import <AVFoundation/AVFoundation.h>
#import <AppKit/AppKit.h>
#import <CoreServices/CoreServices.h>
#import <Foundation/Foundation.h>
#endif

#include "platform/hid.h"

namespace quiverly {

template<auto function, class Signature>
constexpr bool has = std::is_same_v<decltype(function), Signature*>;

// The same widths on both sides of the port.
static_assert(std::is_same_v<IOReturn, std::int32_t>);
static_assert(std::is_same_v<IOReturn, kern_return_t>);
static_assert(std::is_same_v<hid::ReturnCode, IOReturn>);
static_assert(std::is_same_v<CFIndex, long>);
static_assert(std::is_same_v<CFTypeRef, const void*>);
static_assert(std::is_same_v<CFTimeInterval, double>);
static_assert(std::is_same_v<io_object_t, mach_port_t>);
static_assert(std::is_same_v<io_iterator_t, io_object_t>);
static_assert(std::is_same_v<io_service_t, io_object_t>);
static_assert(std::is_same_v<io_registry_entry_t, io_object_t>);
static_assert(std::is_same_v<IOOptionBits, std::uint32_t>);
static_assert(sizeof(std::ptrdiff_t) == sizeof(CFIndex));

static_assert(hid::success == kIOReturnSuccess && kIOReturnSuccess == KERN_SUCCESS);
static_assert(hid::generalError == kIOReturnError);
static_assert(hid::noDevice == kIOReturnNoDevice);
static_assert(hid::exclusiveAccess == kIOReturnExclusiveAccess);
static_assert(hid::notPermitted == kIOReturnNotPermitted);
static_assert(IO_OBJECT_NULL == 0);
static_assert(kIOHIDReportTypeInput == 0);
static_assert(kCFNumberSInt32Type == 3 && kCFNumberSInt64Type == 4);
static_assert(kCFStringEncodingUTF8 == 0x08000100);
static_assert(kCFRunLoopRunFinished == 1 && kCFRunLoopRunStopped == 2);
static_assert(kCFRunLoopRunTimedOut == 3 && kCFRunLoopRunHandledSource == 4);

// CoreFoundation
static_assert(std::is_same_v<decltype(kCFAllocatorDefault), const CFAllocatorRef>);
static_assert(std::is_same_v<decltype(kCFRunLoopDefaultMode), const CFRunLoopMode>);
static_assert(std::is_convertible_v<CFRunLoopMode, CFStringRef>);
static_assert(std::is_convertible_v<CFMutableDictionaryRef, CFDictionaryRef>);
static_assert(has<CFRelease, void(CFTypeRef)>);
static_assert(has<CFGetTypeID, CFTypeID(CFTypeRef)>);
static_assert(has<CFStringCreateWithCString, CFStringRef(CFAllocatorRef, const char*, CFStringEncoding)>);
static_assert(has<CFNumberGetTypeID, CFTypeID()>);
static_assert(has<CFNumberCreate, CFNumberRef(CFAllocatorRef, CFNumberType, const void*)>);
static_assert(has<CFNumberIsFloatType, Boolean(CFNumberRef)>);
static_assert(has<CFNumberGetValue, Boolean(CFNumberRef, CFNumberType, void*)>);
static_assert(has<CFDictionaryGetValue, const void*(CFDictionaryRef, const void*)>);
static_assert(has<CFRunLoopGetCurrent, CFRunLoopRef()>);
static_assert(has<CFRunLoopRunInMode, CFRunLoopRunResult(CFRunLoopMode, CFTimeInterval, Boolean)>);

// IOKit
static_assert(std::is_same_v<decltype(kIOMainPortDefault), const mach_port_t>);
static_assert(has<IOServiceMatching, CFMutableDictionaryRef(const char*)>);
static_assert(has<IOServiceGetMatchingServices, kern_return_t(mach_port_t, CFDictionaryRef, io_iterator_t*)>);
static_assert(has<IOIteratorNext, io_object_t(io_iterator_t)>);
static_assert(has<IOObjectRelease, kern_return_t(io_object_t)>);
static_assert(has<IORegistryEntryCreateCFProperties,
                  kern_return_t(io_registry_entry_t, CFMutableDictionaryRef*, CFAllocatorRef, IOOptionBits)>);
static_assert(has<IORegistryEntrySetCFProperty, kern_return_t(io_registry_entry_t, CFStringRef, CFTypeRef)>);
static_assert(has<IOHIDDeviceCreate, IOHIDDeviceRef(CFAllocatorRef, io_service_t)>);
static_assert(has<IOHIDDeviceOpen, IOReturn(IOHIDDeviceRef, IOOptionBits)>);
static_assert(has<IOHIDDeviceClose, IOReturn(IOHIDDeviceRef, IOOptionBits)>);
static_assert(has<IOHIDDeviceScheduleWithRunLoop, void(IOHIDDeviceRef, CFRunLoopRef, CFStringRef)>);
static_assert(has<IOHIDDeviceUnscheduleFromRunLoop, void(IOHIDDeviceRef, CFRunLoopRef, CFStringRef)>);
static_assert(has<IOHIDDeviceRegisterInputReportCallback,
                  void(IOHIDDeviceRef, std::uint8_t*, CFIndex, IOHIDReportCallback, void*)>);
static_assert(std::is_same_v<IOHIDReportCallback,
                             void (*)(void*, IOReturn, void*, IOHIDReportType, std::uint32_t, std::uint8_t*, CFIndex)>);

// The dynamic loader
static_assert(has<_NSGetExecutablePath, int(char*, std::uint32_t*)>);

// Threads
static_assert(std::is_same_v<decltype(pthread_setname_np("")), int>);

#ifdef __OBJC__

// Foundation, AppKit, AVFoundation: what each message that is sent answers. Never called.
template<class Answer, class Expression>
constexpr bool answers = std::is_same_v<std::remove_cvref_t<Expression>, Answer>;

inline void messages(NSString* text, NSNumber* number, NSURL* url, id object, AVAudioPlayer* player) {
    NSBundle* const bundle = NSBundle.mainBundle;
    NSUserDefaults* const defaults = NSUserDefaults.standardUserDefaults;
    NSProcessInfo* const process = NSProcessInfo.processInfo;
    constexpr NSActivityOptions listening = NSActivityUserInitiatedAllowingIdleSystemSleep;
    static_assert(answers<const char*, decltype(text.UTF8String)>);
    static_assert(answers<NSComparisonResult, decltype([text localizedStandardCompare:text])>);
    static_assert(NSOrderedAscending == -1 && NSUTF8StringEncoding == 4);
    static_assert(answers<double, decltype(number.doubleValue)>);
    static_assert(answers<BOOL, decltype([object isKindOfClass:NSNumber.class])>);
    static_assert(answers<const char*, decltype(url.fileSystemRepresentation)>);
    static_assert(answers<NSString*, decltype(url.scheme)>);
    static_assert(answers<NSURL*, decltype([NSURL URLWithString:text])>);
    static_assert(answers<NSURL*, decltype(bundle.resourceURL)>);
    static_assert(answers<NSAppleEventManager*, decltype(NSAppleEventManager.sharedAppleEventManager)>);
    static_assert(kCoreEventClass == 0x61657674 && kAEReopenApplication == 0x72617070); // 'aevt', 'rapp'
    static_assert(answers<NSURL*, decltype([bundle URLForResource:text withExtension:text])>);
    static_assert(answers<NSArray<NSURL*>*, decltype([bundle URLsForResourcesWithExtension:text subdirectory:text])>);
    static_assert(answers<id, decltype([defaults objectForKey:text])>);
    static_assert(answers<NSString*, decltype([defaults stringForKey:text])>);
    static_assert(answers<void, decltype([defaults setObject:text forKey:text])>);
    static_assert(answers<void, decltype([defaults setDouble:0.0 forKey:text])>);
    static_assert(answers<id<NSObject>, decltype([process beginActivityWithOptions:listening reason:text])>);
    static_assert(answers<void, decltype([process endActivity:object])>);
    static_assert(listening == 0x00EFFFFF);
    static_assert(answers<BOOL, decltype([NSWorkspace.sharedWorkspace openURL:url])>);
    static_assert(answers<float, decltype(player.volume)>);
    static_assert(answers<BOOL, decltype([player prepareToPlay])>);
    static_assert(answers<BOOL, decltype([player play])>);
}

#endif

} // namespace quiverly
