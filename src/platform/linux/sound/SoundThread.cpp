#include "platform/linux/sound/SoundThread.h"

#include <sys/eventfd.h>

#include <utility>

namespace quiverly {

SoundThread::SoundThread() : wakes(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)), loop(pa_threaded_mainloop_new()) {
    if (!wakes || !loop) return;
    api()->io_new(api(), wakes.get(), PA_IO_EVENT_INPUT, wake, this);
    pa_threaded_mainloop_set_name(loop.get(), "quiverly-sound");
    running = pa_threaded_mainloop_start(loop.get()) == 0;
}

SoundThread::~SoundThread() {
    stop();
}

void SoundThread::post(Job job) {
    if (running && jobs.push(std::move(job))) eventfd_write(wakes.get(), 1);
}

void SoundThread::stop() {
    if (std::exchange(running, false)) pa_threaded_mainloop_stop(loop.get());
}

void SoundThread::wake(pa_mainloop_api*, pa_io_event*, int descriptor, pa_io_event_flags_t, void* self) {
    eventfd_t count = 0;
    eventfd_read(descriptor, &count);
    static_cast<SoundThread*>(self)->jobs.runTurn();
}

} // namespace quiverly
