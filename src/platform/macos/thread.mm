#include "platform/thread.h"

#include <future>
#include <utility>

#import <Foundation/Foundation.h>

#include "platform/macos/foundation_text.h"

namespace quiverly {

struct Thread {
    std::future<void> ended;
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

} // namespace

ThreadHandle startThread(const char* name, std::size_t stackSize, ThreadLoop loop) {
    const auto body = std::make_shared<ThreadLoop>(std::move(loop));
    const auto ended = std::make_shared<std::promise<void>>();
    ThreadHandle handle(new Thread{ended->get_future()});
    NSThread* const thread = [[NSThread alloc] initWithBlock:^{
      run(std::exchange(*body, {}));
      ended->set_value();
    }];
    thread.name = foundationText(name);
    thread.stackSize = stackSize;
    [thread start];
    return handle;
}

void JoinThread::operator()(Thread* thread) const noexcept {
    thread->ended.wait();
    delete thread;
}

} // namespace quiverly
