#pragma once

#include <atomic>
#include <memory>
#include <mutex>

#include <pthread.h>
#include <pulse/mainloop-api.h>

#include "platform/linux/sound/Playback.h"
#include "sockets/FileDescriptor.h"

namespace quiverly {

class ServerConnection;

// The thread that alone talks to the sound server. It sleeps until the server says something or play() is called.
//
// Only the last playback asked for waits for it, so that a thread that gets nowhere fills no memory.
class SoundThread {
public:
    SoundThread();
    ~SoundThread(); // cuts off what plays
    SoundThread(const SoundThread&) = delete;
    SoundThread& operator=(const SoundThread&) = delete;

    // False once the thread has ended, or when it could not be started.
    bool isRunning() const { return running; }

    // Plays in place of what plays or waits; null for silence. Any thread; never waits.
    void play(std::unique_ptr<Playback> playback);

private:
    static void* run(void* self);
    void runLoop();
    void wake() const;
    static void woken(pa_mainloop_api* api, pa_io_event*, int descriptor, pa_io_event_flags_t, void* self);

    FileDescriptor wakes;
    std::atomic<bool> running = false;
    std::atomic<bool> stopping = false;

    std::mutex mutex;
    bool asked = false;               // for another playback, or silence
    std::unique_ptr<Playback> wanted; // until the thread takes it

    ServerConnection* connection = nullptr; // of the sound thread
    pthread_t thread = {};
    bool started = false;
};

} // namespace quiverly
