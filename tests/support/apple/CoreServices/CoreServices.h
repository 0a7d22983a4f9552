#pragma once

// The part of CoreServices that Quiverly uses, declared after Apple's published documentation.

#include <CoreFoundation/CoreFoundation.h>

typedef UInt32 AEEventClass;
typedef UInt32 AEEventID;

enum : AEEventClass { kCoreEventClass = 0x61657674 };   // 'aevt'
enum : AEEventID { kAEReopenApplication = 0x72617070 }; // 'rapp'
