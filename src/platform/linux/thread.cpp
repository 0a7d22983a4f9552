#include "platform/thread.h"

#include <pthread.h>

#include <string>
#include <utility>

namespace quiverly {

struct Thread {
    std::string name;
    ThreadLoop loop;
    pthread_t thread = {};
};

namespace {

constexpr std::size_t longestName = 15; // bytes; a longer name would be refused, not cut

void* run(void* argument) {
    auto& thread = *static_cast<Thread*>(argument);
    ::pthread_setname_np(::pthread_self(), thread.name.c_str());
    ThreadLoop loop = std::exchange(thread.loop, {});
    loop.begin();
    while (loop.turn()) {
    }
    loop.end();
    return nullptr;
}

bool create(Thread& thread, std::size_t stackSize) {
    pthread_attr_t attributes;
    if (::pthread_attr_init(&attributes) != 0) return false;
    const bool created = ::pthread_attr_setstacksize(&attributes, stackSize) == 0 &&
                         ::pthread_create(&thread.thread, &attributes, run, &thread) == 0;
    ::pthread_attr_destroy(&attributes);
    return created;
}

} // namespace

ThreadHandle startThread(const char* name, std::size_t stackSize, ThreadLoop loop) {
    auto thread = std::make_unique<Thread>();
    thread->name = std::string(name).substr(0, longestName);
    thread->loop = std::move(loop);
    return create(*thread, stackSize) ? ThreadHandle(thread.release()) : nullptr;
}

void JoinThread::operator()(Thread* thread) const noexcept {
    ::pthread_join(thread->thread, nullptr);
    delete thread;
}

} // namespace quiverly
