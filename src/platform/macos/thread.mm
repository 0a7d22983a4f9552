#include "platform/thread.h"

#include <pthread.h>

#include <string>
#include <utility>

#import <Foundation/Foundation.h>

namespace quiverly {

struct Thread {
    std::string name;
    ThreadLoop loop;
    pthread_t thread = {};
};

namespace {

// Each turn has an autorelease pool of its own: the thread has no event loop that would drain one.
// NOLINTNEXTLINE(performance-unnecessary-value-param): what the loop holds is let go when it has ended
void run(ThreadLoop loop) {
    @autoreleasepool {
        loop.begin();
    }
    for (bool again = true; again;) {
        @autoreleasepool {
            again = loop.turn();
        }
    }
    @autoreleasepool {
        loop.end();
    }
}

// While the thread runs, the system neither puts the program to sleep for having no window in sight (App Nap) nor
// defers its timers; the computer itself may sleep.
void* runActively(void* argument) {
    auto& thread = *static_cast<Thread*>(argument);
    @autoreleasepool {
        pthread_setname_np(thread.name.c_str());
        const id<NSObject> activity =
            [NSProcessInfo.processInfo beginActivityWithOptions:NSActivityUserInitiatedAllowingIdleSystemSleep
                                                         reason:@"Listening to the motion sensor"];
        run(std::exchange(thread.loop, {}));
        [NSProcessInfo.processInfo endActivity:activity];
    }
    return nullptr;
}

bool create(Thread& thread, std::size_t stackSize) {
    pthread_attr_t attributes;
    if (pthread_attr_init(&attributes) != 0) return false;
    const bool created = pthread_attr_setstacksize(&attributes, stackSize) == 0 &&
                         pthread_create(&thread.thread, &attributes, runActively, &thread) == 0;
    pthread_attr_destroy(&attributes);
    return created;
}

} // namespace

// Not an NSThread, which says neither that the system had no thread to give nor when it has ended.
ThreadHandle startThread(const char* name, std::size_t stackSize, ThreadLoop loop) {
    auto thread = std::make_unique<Thread>();
    thread->name = name;
    thread->loop = std::move(loop);
    return create(*thread, stackSize) ? ThreadHandle(thread.release()) : nullptr;
}

void JoinThread::operator()(Thread* thread) const noexcept {
    pthread_join(thread->thread, nullptr);
    delete thread;
}

} // namespace quiverly
