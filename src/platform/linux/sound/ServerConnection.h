#pragma once

#include <memory>
#include <optional>

#include <pulse/context.h>
#include <pulse/introspect.h>
#include <pulse/mainloop-api.h>

#include "platform/linux/sound/ClipStream.h"
#include "platform/linux/sound/Playback.h"

namespace quiverly {

// This program's connection to the user's sound server. Sound thread.
//
// It is made when a clip needs one, kept as long as the server keeps it, and made anew for the next clip after that. A
// clip that finds no server is silent; a clip for which the server takes too long is dropped. A server is asked what it
// is before the first clip, because PipeWire has to be told that sound should start soon.
class ServerConnection {
public:
    explicit ServerConnection(pa_mainloop_api& api) : api(api) {}
    ServerConnection(const ServerConnection&) = delete;
    ServerConnection& operator=(const ServerConnection&) = delete;

    // Plays in place of what plays or waits for the server; null for silence.
    void play(std::unique_ptr<Playback> playback);

private:
    struct Disconnect {
        void operator()(pa_context* context) const;
    };

    void settle();
    void connect();
    void disconnect();
    void askServer();
    static void contextChanged(pa_context* context, void* self);
    static void serverAnswered(pa_context*, const pa_server_info* server, void* self);

    pa_mainloop_api& api;
    std::unique_ptr<pa_context, Disconnect> context;
    std::optional<ClipStream::Cycles> cycles; // of the server, once it has answered
    std::unique_ptr<Playback> wanted;         // to play next; what plays belongs to the stream
    std::unique_ptr<ClipStream> stream;
    bool cutOff = false; // the stream, as soon as the server lets it
};

} // namespace quiverly
