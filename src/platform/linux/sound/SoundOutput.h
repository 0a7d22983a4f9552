#pragma once

#include <memory>

#include <pulse/context.h>

#include "platform/linux/sound/ClipStream.h"
#include "platform/linux/sound/Playback.h"
#include "platform/linux/sound/SoundThread.h"

namespace quiverly {

// Plays one clip at a time through the user's sound server.
//
// The operations belong to the main thread and never wait: the sound thread does what they ask for. A connection is
// made when a clip needs one, kept as long as the server keeps it, and made anew for the next clip after that. A clip
// that finds no server is silent; a clip for which the server takes too long is dropped.
class SoundOutput {
public:
    ~SoundOutput();

    // Plays the clip from its start and cuts off the one before; with null only that.
    void play(std::shared_ptr<const Playback> playback);

    // Ends that playback, unless another one has cut it off.
    void end(const std::shared_ptr<const Playback>& playback);

private:
    struct Disconnect {
        void operator()(pa_context* context) const;
    };

    std::shared_ptr<const Playback> latest; // asked for by the main thread; none for silence

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
