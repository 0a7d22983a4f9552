#pragma once

#include <cstddef>
#include <functional>
#include <memory>

#include <pulse/context.h>
#include <pulse/operation.h>
#include <pulse/stream.h>

#include "platform/linux/sound/Playback.h"

namespace quiverly {

// A stream of the sound server that plays one clip once, on the default sink. Sound thread.
//
// A stream that the server grants too late plays nothing. Destroying one that is past its start ends its sound; while
// it is starting the server cannot be told to end it, so its owner waits for the answer.
class ClipStream {
public:
    enum class State { starting, sounding, finished };

    // The context is ready. onChange is called at each change of state; it may destroy the stream.
    ClipStream(pa_context& context, std::unique_ptr<Playback> playback, std::function<void()> onChange);
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

    bool connect();
    void feed(std::size_t bytes);
    std::size_t write(std::size_t bytes);
    void drain();
    void become(State state);

    static void stateChanged(pa_stream* stream, void* self);
    static void dataWanted(pa_stream*, std::size_t bytes, void* self);
    static void drained(pa_stream*, int, void* self);

    std::unique_ptr<Playback> current;
    std::function<void()> onChange;
    std::unique_ptr<pa_stream, Disconnect> stream;
    std::unique_ptr<pa_operation, Cancel> draining;
    std::size_t position = 0; // of the next sample to write
    State currentState = State::starting;
};

} // namespace quiverly
