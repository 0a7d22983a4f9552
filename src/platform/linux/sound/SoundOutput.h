#pragma once

#include <memory>

#include <pulse/context.h>

#include "platform/linux/sound/ClipStream.h"
#include "platform/linux/sound/Playback.h"
#include "platform/linux/sound/SoundThread.h"

namespace quiverly {

// What this program lets be heard: one clip at a time, through the user's sound server.
//
// The operations belong to the main thread and never wait: what they ask for is done on the sound thread. A connection
// is made when a clip needs one, kept as long as the server keeps it, and made anew for the next clip after that. A
// clip that finds no server is silent; a clip for which the server takes too long is dropped.
class SoundOutput {
public:
    ~SoundOutput();

    // Makes the connection ahead of a clip that is about to be played.
    void prepare();

    // Plays the clip from its start and cuts off the one before.
    void play(std::shared_ptr<const Playback> playback);

    // Ends that playback, if it is the one that sounds or is to sound.
    void end(std::shared_ptr<const Playback> playback);

private:
    struct Disconnect {
        void operator()(pa_context* context) const;
    };

    // All that follows belongs to the sound thread.
    void connect();
    void disconnect();
    void settle();
    void dismissStream();
    static void contextChanged(pa_context* context, void* self);

    SoundThread thread;
    std::unique_ptr<pa_context, Disconnect> context;
    std::unique_ptr<ClipStream> stream;
    std::shared_ptr<const Playback> wanted; // what should sound now; none for silence
};

} // namespace quiverly
