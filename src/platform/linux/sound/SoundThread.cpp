#include "platform/linux/sound/SoundThread.h"

#include <pulse/mainloop.h>
#include <sys/eventfd.h>

#include <csignal>
#include <utility>

#include "platform/linux/sound/ServerConnection.h"

namespace quiverly {

namespace {

struct FreeLoop {
    void operator()(pa_mainloop* loop) const { pa_mainloop_free(loop); }
};

// Signals are the main thread's.
void blockSignals() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, nullptr);
}

} // namespace

SoundThread::SoundThread() : wakes(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (!wakes) return;
    running = true;
    started = pthread_create(&thread, nullptr, run, this) == 0;
    if (!started) running = false;
}

SoundThread::~SoundThread() {
    stopping = true;
    wake();
    if (started) pthread_join(thread, nullptr);
}

void SoundThread::play(std::unique_ptr<Playback> playback) {
    {
        const std::lock_guard lock(mutex);
        wanted.swap(playback);
        asked = true;
    }
    wake();
}

void SoundThread::wake() const {
    if (wakes) eventfd_write(wakes.get(), 1);
}

void* SoundThread::run(void* self) {
    auto& thread = *static_cast<SoundThread*>(self);
    blockSignals();
    pthread_setname_np(pthread_self(), "quiverly-sound");
    thread.runLoop();
    thread.running = false;
    return nullptr;
}

// Until the program ends, or until the loop cannot wait any more.
void SoundThread::runLoop() {
    const std::unique_ptr<pa_mainloop, FreeLoop> loop(pa_mainloop_new());
    if (!loop) return;
    pa_mainloop_api* api = pa_mainloop_get_api(loop.get());
    ServerConnection ownConnection(*api);
    connection = &ownConnection;
    api->io_new(api, wakes.get(), PA_IO_EVENT_INPUT, woken, this);
    pa_mainloop_run(loop.get(), nullptr);
}

void SoundThread::woken(pa_mainloop_api* api, pa_io_event*, int descriptor, pa_io_event_flags_t, void* self) {
    auto& thread = *static_cast<SoundThread*>(self);
    eventfd_t count = 0;
    eventfd_read(descriptor, &count);
    if (thread.stopping) return api->quit(api, 0);
    std::unique_ptr<Playback> playback;
    {
        const std::lock_guard lock(thread.mutex);
        if (!std::exchange(thread.asked, false)) return;
        playback = std::move(thread.wanted);
    }
    thread.connection->play(std::move(playback));
}

} // namespace quiverly
