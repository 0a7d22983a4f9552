#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <span>

#include <pulse/context.h>
#include <pulse/mainloop-api.h>
#include <pulse/operation.h>
#include <pulse/stream.h>

#include "platform/linux/sound/Playback.h"

namespace quiverly {

// A stream of the sound server that plays one clip once, on the default sink. Sound thread.
//
// The clip is decoded as the server asks for it, piece by piece; between two pieces the loop looks at everything else.
// The stream starts once the server has the beginning of the clip, so that the device's next cycle plays it. A stream
// that the server grants too late plays nothing. Destroying one that is past its start ends its sound; while it is
// starting the server cannot be told to end it, so its owner waits for the answer.
class ClipStream {
public:
    enum class State { starting, sounding, finished };

    // In which the server shall work until the clip sounds. Brief ones start it sooner.
    enum class Cycles { usual, brief };

    // The context is ready and outlives the stream. onChange is called at each change of state; it may destroy the
    // stream.
    ClipStream(pa_mainloop_api& api, pa_context& context, Cycles cycles, std::unique_ptr<Playback> playback,
               std::function<void()> onChange);
    ~ClipStream();
    ClipStream(const ClipStream&) = delete;
    ClipStream& operator=(const ClipStream&) = delete;

    State state() const { return currentState; }

private:
    struct Disconnect {
        void operator()(pa_stream* stream) const;
    };
    struct Cancel {
        void operator()(pa_operation* operation) const;
    };

    struct FreeTimer {
        pa_mainloop_api* api;
        void operator()(pa_time_event* timer) const { api->time_free(timer); }
    };

    bool connect(Cycles cycles);
    void feed();
    void start();
    bool write(std::span<const float> samples);
    void drain();
    void become(State state);

    static void stateChanged(pa_stream* stream, void* self);
    static void started(pa_stream* stream, void*);
    static void dataWanted(pa_stream*, std::size_t bytes, void* self);
    static void nextPieceIsDue(pa_mainloop_api*, pa_time_event*, const timeval*, void* self);
    static void drained(pa_stream*, int, void* self);

    pa_context& context;
    const std::unique_ptr<Playback> playback;
    std::function<void()> onChange;
    std::unique_ptr<pa_stream, Disconnect> stream;
    std::unique_ptr<pa_time_event, FreeTimer> nextPiece;
    std::unique_ptr<pa_operation, Cancel> starting;
    std::unique_ptr<pa_operation, Cancel> draining;
    std::size_t framesUntilStart; // to write yet
    State currentState = State::starting;
};

} // namespace quiverly
