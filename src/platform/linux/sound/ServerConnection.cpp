#include "platform/linux/sound/ServerConnection.h"

#include <string_view>
#include <utility>

#include <pulse/operation.h>
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

bool namesPipeWire(const char* serverName) {
    return serverName != nullptr && std::string_view(serverName).find("PipeWire") != std::string_view::npos;
}

} // namespace

void ServerConnection::Disconnect::operator()(pa_context* context) const {
    pa_context_set_state_callback(context, nullptr, nullptr);
    pa_context_disconnect(context);
    pa_context_unref(context);
}

void ServerConnection::play(std::unique_ptr<Playback> playback) {
    wanted = std::move(playback);
    cutOff = true;
    settle();
}

// Takes the next step towards what is wanted: called whenever that, the stream or the connection has changed.
void ServerConnection::settle() {
    if (stream && stream->state() == ClipStream::State::starting) return; // its answer comes first
    if (stream && !cutOff && stream->state() == ClipStream::State::sounding) return;
    stream.reset();
    if (!wanted) return;
    connect();
    if (!cycles) return;
    cutOff = false;
    stream = std::make_unique<ClipStream>(api, *context, *cycles, std::move(wanted), [this] { settle(); });
    if (stream->state() == ClipStream::State::finished) stream.reset(); // could not even ask the server
}

void ServerConnection::connect() {
    if (context) return;
    context.reset(pa_context_new_with_proplist(&api, nullptr, ownProperties().get()));
    if (context && pa_context_connect(context.get(), nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) == 0) {
        pa_context_set_state_callback(context.get(), contextChanged, this);
    } else {
        disconnect();
    }
}

void ServerConnection::disconnect() {
    wanted.reset();
    stream.reset();
    cycles.reset();
    context.reset();
}

void ServerConnection::askServer() {
    pa_operation* question = pa_context_get_server_info(context.get(), serverAnswered, this);
    if (question == nullptr) return disconnect();
    pa_operation_unref(question); // ends with the context at the latest
}

// PulseAudio starts a stream at once. PipeWire works in the cycles that its streams ask for.
void ServerConnection::serverAnswered(pa_context*, const pa_server_info* server, void* self) {
    auto& connection = *static_cast<ServerConnection*>(self);
    const bool isPipeWire = server != nullptr && namesPipeWire(server->server_name);
    connection.cycles = isPipeWire ? ClipStream::Cycles::brief : ClipStream::Cycles::usual;
    connection.settle();
}

void ServerConnection::contextChanged(pa_context* context, void* self) {
    auto& connection = *static_cast<ServerConnection*>(self);
    const pa_context_state_t state = pa_context_get_state(context);
    if (!PA_CONTEXT_IS_GOOD(state)) {
        connection.disconnect();
    } else if (state == PA_CONTEXT_READY) {
        connection.askServer();
    }
}

} // namespace quiverly
