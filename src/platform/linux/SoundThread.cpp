#include "platform/linux/SoundThread.h"

#include <utility>

#include <sys/eventfd.h>
#include <unistd.h>

namespace quiverly {

SoundThread::SoundThread() : wakeDescriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)), loop(pa_threaded_mainloop_new()) {
    if (wakeDescriptor < 0 || !loop) return;
    api()->io_new(api(), wakeDescriptor, PA_IO_EVENT_INPUT, wake, this);
    pa_threaded_mainloop_set_name(loop.get(), "quiverly-sound");
    running = pa_threaded_mainloop_start(loop.get()) == 0;
}

SoundThread::~SoundThread() {
    stop();
    loop.reset();
    if (wakeDescriptor >= 0) close(wakeDescriptor);
}

void SoundThread::post(Job job) {
    if (running && jobs.push(std::move(job))) eventfd_write(wakeDescriptor, 1);
}

void SoundThread::stop() {
    if (std::exchange(running, false)) pa_threaded_mainloop_stop(loop.get());
}

void SoundThread::wake(pa_mainloop_api*, pa_io_event*, int descriptor, pa_io_event_flags_t, void* self) {
    eventfd_t wakes = 0;
    eventfd_read(descriptor, &wakes);
    static_cast<SoundThread*>(self)->jobs.runTurn();
}

} // namespace quiverly
