#pragma once

#include <memory>

#include <pulse/thread-mainloop.h>

#include "platform/shared/JobQueue.h"
#include "sockets/FileDescriptor.h"

namespace quiverly {

// The thread that alone talks to the sound server. It sleeps until the server says something or a job is posted.
class SoundThread {
public:
    using Job = mainQueue::Job;

    SoundThread();
    ~SoundThread(); // ends the thread; jobs still waiting are dropped
    SoundThread(const SoundThread&) = delete;
    SoundThread& operator=(const SoundThread&) = delete;

    // The thread that made this object; never waits. Jobs run on the sound thread, one at a time, in order. If the
    // thread could not be started, they are dropped.
    void post(Job job);

    // Ends the thread, after which the caller may do what only the sound thread did.
    void stop();

    // What connections to the server are made with. Sound thread.
    pa_mainloop_api* api() const { return pa_threaded_mainloop_get_api(loop.get()); }

private:
    struct FreeLoop {
        void operator()(pa_threaded_mainloop* loop) const { pa_threaded_mainloop_free(loop); }
    };

    // The library's own lock is never taken: the sound thread holds it for as long as a call into the library lasts.
    static void wake(pa_mainloop_api*, pa_io_event*, int descriptor, pa_io_event_flags_t, void* self);

    JobQueue jobs;
    FileDescriptor wakes;
    std::unique_ptr<pa_threaded_mainloop, FreeLoop> loop;
    bool running = false;
};

} // namespace quiverly
