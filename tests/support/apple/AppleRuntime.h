#pragma once

#include <cstddef>

// What automatic reference counting takes of Apple's Objective-C runtime and GNU's does not have: counted references,
// autorelease pools, and a notice of every use of an object that is gone, which ends the program with a message. The
// memory of such an object is kept, so that its address stands for nothing else. Any thread.
namespace quiverly::apple_runtime {

std::size_t objectsAlive();

} // namespace quiverly::apple_runtime

extern "C" {
// Begin an autorelease pool on the calling thread, and end the one that was begun last.
void* objc_autoreleasePoolPush();
void objc_autoreleasePoolPop(void* pool); // what the other answered
}
