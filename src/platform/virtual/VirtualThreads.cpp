#include "platform/virtual/VirtualThreads.h"

#include <algorithm>
#include <thread>
#include <utility>

#include "platform/virtual/VirtualPlatform.h"

namespace quiverly {

namespace {
thread_local const Thread* running = nullptr;
}

// Is in the platform's list for as long as it lives.
struct Thread {
    Thread(ThreadLoop loop, bool real) : loop(std::move(loop)) {
        VirtualPlatform::current().threads.threads.push_back(this);
        if (real) {
            thread = std::thread([this] {
                while (!ended) turn();
            });
        }
    }

    ~Thread() {
        if (thread.joinable()) thread.join();
        for (int patience = 1000; !ended; --patience) {
            if (patience == 0) VirtualPlatform::fault("a loop was told to end and did not");
            turn();
        }
        std::erase(VirtualPlatform::current().threads.threads, this);
    }

    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;

    void turn() {
        running = this;
        if (!begun) {
            loop.begin();
            begun = true;
        }
        if (!loop.turn()) {
            loop.end();
            loop = {};
            ended = true;
        }
        running = nullptr;
    }

    ThreadLoop loop;
    bool begun = false;
    bool ended = false;
    std::thread thread; // joinable only if the thread is real
};

void VirtualThreads::turn() {
    for (Thread* thread : threads) {
        if (!thread->thread.joinable() && !thread->ended) thread->turn();
    }
}

std::size_t VirtualThreads::looping() const {
    return static_cast<std::size_t>(
        std::count_if(threads.begin(), threads.end(), [](const Thread* thread) { return !thread->ended; }));
}

const Thread* VirtualThreads::current() {
    return running;
}

ThreadHandle startThread(const char* name, std::size_t stackSize, ThreadLoop loop) {
    VirtualThreads& threads = VirtualPlatform::current().threads;
    if (threads.exhausted) return nullptr;
    threads.lastName = name;
    threads.lastStackSize = stackSize;
    return ThreadHandle(new Thread(std::move(loop), threads.real));
}

void JoinThread::operator()(Thread* thread) const noexcept {
    delete thread;
}

} // namespace quiverly
