#pragma once

// The part of IOKit's HID devices that Quiverly uses, declared after Apple's published documentation.

#include <CoreFoundation/CoreFoundation.h>
#include <IOKit/IOKitLib.h>

enum IOHIDReportType {
    kIOHIDReportTypeInput = 0,
    kIOHIDReportTypeOutput,
    kIOHIDReportTypeFeature,
    kIOHIDReportTypeCount
};

extern "C" {
CF_ASSUME_NONNULL_BEGIN

typedef struct __IOHIDDevice* IOHIDDeviceRef;

typedef void (*IOHIDReportCallback)(void* _Nullable context, IOReturn result, void* _Nullable sender,
                                    IOHIDReportType type, uint32_t reportID, uint8_t* report, CFIndex reportLength);

IOHIDDeviceRef _Nullable IOHIDDeviceCreate(CFAllocatorRef _Nullable allocator, io_service_t service);
IOReturn IOHIDDeviceOpen(IOHIDDeviceRef device, IOOptionBits options);
IOReturn IOHIDDeviceClose(IOHIDDeviceRef device, IOOptionBits options);
void IOHIDDeviceRegisterInputReportCallback(IOHIDDeviceRef device, uint8_t* report, CFIndex reportLength,
                                            IOHIDReportCallback _Nullable callback, void* _Nullable context);
void IOHIDDeviceScheduleWithRunLoop(IOHIDDeviceRef device, CFRunLoopRef runLoop, CFStringRef runLoopMode);
void IOHIDDeviceUnscheduleFromRunLoop(IOHIDDeviceRef device, CFRunLoopRef runLoop, CFStringRef runLoopMode);

CF_ASSUME_NONNULL_END
}
