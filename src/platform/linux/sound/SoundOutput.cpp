#include "platform/linux/sound/SoundOutput.h"

#include <utility>

#include <pulse/proplist.h>

#include "identity.h"

namespace quiverly {

namespace {

struct FreeProperties {
    void operator()(pa_proplist* properties) const { pa_proplist_free(properties); }
};

// As the system's mixer shows this program.
std::unique_ptr<pa_proplist, FreeProperties> ownProperties() {
    std::unique_ptr<pa_proplist, FreeProperties> properties(pa_proplist_new());
    pa_proplist_sets(properties.get(), PA_PROP_APPLICATION_NAME, "Quiverly");
    pa_proplist_sets(properties.get(), PA_PROP_APPLICATION_ID, identity::identifier);
    pa_proplist_sets(properties.get(), PA_PROP_APPLICATION_VERSION, identity::version);
    pa_proplist_sets(properties.get(), PA_PROP_APPLICATION_ICON_NAME, identity::identifier);
    return properties;
}

} // namespace

void SoundOutput::Disconnect::operator()(pa_context* context) const {
    pa_context_set_state_callback(context, nullptr, nullptr);
    pa_context_disconnect(context);
    pa_context_unref(context);
}

SoundOutput::~SoundOutput() {
    thread.stop();
}

void SoundOutput::play(std::shared_ptr<const Playback> playback) {
    latest = playback;
    thread.post([this, playback = std::move(playback)] {
        wanted = playback;
        settle();
    });
}

void SoundOutput::end(const std::shared_ptr<const Playback>& playback) {
    if (playback == latest) play(nullptr);
}

void SoundOutput::connect() {
    if (context) return;
    context.reset(pa_context_new_with_proplist(thread.api(), nullptr, ownProperties().get()));
    if (context && pa_context_connect(context.get(), nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) == 0) {
        pa_context_set_state_callback(context.get(), contextChanged, this);
    } else {
        disconnect();
    }
}

void SoundOutput::disconnect() {
    wanted.reset();
    stream.reset();
    context.reset();
}

void SoundOutput::contextChanged(pa_context* context, void* self) {
    auto& output = *static_cast<SoundOutput*>(self);
    const pa_context_state_t state = pa_context_get_state(context);
    if (!PA_CONTEXT_IS_GOOD(state)) {
        output.disconnect();
    } else if (state == PA_CONTEXT_READY) {
        output.settle();
    }
}

// Takes the next step towards what is wanted: called whenever that, the stream or the connection has changed.
void SoundOutput::settle() {
    if (stream && stream->state() == ClipStream::State::starting) return; // its answer comes first
    dismissStream();
    if (!wanted || stream) return;
    connect();
    if (!context || pa_context_get_state(context.get()) != PA_CONTEXT_READY) return;
    stream = std::make_unique<ClipStream>(*context, wanted, [this] { settle(); });
    dismissStream(); // one that could not even ask the server
}

// Lets go of a stream that has finished or is not wanted any more.
void SoundOutput::dismissStream() {
    if (!stream) return;
    const bool finished = stream->state() == ClipStream::State::finished;
    if (finished && wanted == stream->playback()) wanted.reset();
    if (finished || wanted != stream->playback()) stream.reset();
}

} // namespace quiverly
