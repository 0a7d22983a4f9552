#pragma once

// The part of IOKit's registry that Quiverly uses, declared after Apple's published documentation.

#include <CoreFoundation/CoreFoundation.h>

typedef int kern_return_t;
typedef unsigned int mach_port_t;
typedef kern_return_t IOReturn;
typedef UInt32 IOOptionBits;

typedef mach_port_t io_object_t;
typedef io_object_t io_iterator_t;
typedef io_object_t io_registry_entry_t;
typedef io_object_t io_service_t;

#define KERN_SUCCESS 0
#define IO_OBJECT_NULL ((io_object_t)0)

#define iokit_common_err(code) ((IOReturn)(0xE0000000U | (code)))
#define kIOReturnSuccess KERN_SUCCESS
#define kIOReturnError iokit_common_err(0x2bc)
#define kIOReturnNoDevice iokit_common_err(0x2c0)
#define kIOReturnExclusiveAccess iokit_common_err(0x2c5)
#define kIOReturnNotPermitted iokit_common_err(0x2e2)

extern "C" {

extern const mach_port_t kIOMainPortDefault;

CFMutableDictionaryRef IOServiceMatching(const char* name);
kern_return_t IOServiceGetMatchingServices(mach_port_t mainPort, CFDictionaryRef matching, io_iterator_t* existing);
io_object_t IOIteratorNext(io_iterator_t iterator);
kern_return_t IOObjectRelease(io_object_t object);
kern_return_t IORegistryEntryCreateCFProperties(io_registry_entry_t entry, CFMutableDictionaryRef* properties,
                                                CFAllocatorRef allocator, IOOptionBits options);
kern_return_t IORegistryEntrySetCFProperty(io_registry_entry_t entry, CFStringRef propertyName, CFTypeRef property);
}
