#include "platform/linux/sound/ClipStream.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include <pulse/channelmap.h>
#include <pulse/sample.h>

namespace quiverly {

namespace {

constexpr auto serverChoice = static_cast<std::uint32_t>(-1);

} // namespace

void ClipStream::Disconnect::operator()(pa_stream* stream) const {
    pa_stream_set_state_callback(stream, nullptr, nullptr);
    pa_stream_set_write_callback(stream, nullptr, nullptr);
    pa_stream_disconnect(stream);
    pa_stream_unref(stream);
}

void ClipStream::Cancel::operator()(pa_operation* operation) const {
    pa_operation_cancel(operation);
    pa_operation_unref(operation);
}

ClipStream::ClipStream(pa_context& context, std::unique_ptr<Playback> playback, std::function<void()> onChange)
    : current(std::move(playback)), onChange(std::move(onChange)) {
    const Clip& clip = *current->clip;
    const pa_sample_spec format{PA_SAMPLE_FLOAT32NE, clip.rate, clip.channels};
    pa_channel_map channels;
    pa_channel_map_init_extend(&channels, clip.channels, PA_CHANNEL_MAP_DEFAULT);
    stream.reset(pa_stream_new(&context, "Slap", &format, &channels));
    if (!stream || !connect()) currentState = State::finished;
}

ClipStream::~ClipStream() = default;

// Sound starts with the first frame the server has. With no frame at all to wait for, draining would never end.
bool ClipStream::connect() {
    const auto frame = static_cast<std::uint32_t>(pa_frame_size(pa_stream_get_sample_spec(stream.get())));
    const pa_buffer_attr buffer{serverChoice, serverChoice, frame, serverChoice, serverChoice};
    if (pa_stream_connect_playback(stream.get(), nullptr, &buffer, PA_STREAM_NOFLAGS, nullptr, nullptr) < 0)
        return false;
    pa_stream_set_state_callback(stream.get(), stateChanged, this);
    pa_stream_set_write_callback(stream.get(), dataWanted, this);
    return true;
}

void ClipStream::stateChanged(pa_stream* stream, void* self) {
    auto& clipStream = *static_cast<ClipStream*>(self);
    const pa_stream_state_t state = pa_stream_get_state(stream);
    if (!PA_STREAM_IS_GOOD(state)) {
        clipStream.become(State::finished);
    } else if (state == PA_STREAM_READY) {
        clipStream.become(clipStream.current->isStale() ? State::finished : State::sounding);
    }
}

void ClipStream::dataWanted(pa_stream*, std::size_t bytes, void* self) {
    static_cast<ClipStream*>(self)->feed(bytes);
}

void ClipStream::feed(std::size_t bytes) {
    while (bytes > 0 && position < current->clip->samples.size()) {
        const std::size_t written = write(bytes);
        if (written == 0) return become(State::finished);
        bytes -= written;
    }
    if (position == current->clip->samples.size() && !draining) drain();
}

// Writes samples, at most that many bytes of them. How many bytes; 0 on failure.
std::size_t ClipStream::write(std::size_t bytes) {
    const std::size_t left = (current->clip->samples.size() - position) * sizeof(float);
    std::size_t size = std::min(bytes, left);
    void* memory = nullptr;
    if (pa_stream_begin_write(stream.get(), &memory, &size) < 0) return 0;
    size = std::min({size, bytes, left});
    const auto first = current->clip->samples.begin() + static_cast<std::ptrdiff_t>(position);
    const auto count = static_cast<std::ptrdiff_t>(size / sizeof(float));
    std::transform(first, first + count, static_cast<float*>(memory),
                   [volume = current->volume](float sample) { return sample * volume; });
    if (pa_stream_write(stream.get(), memory, size, nullptr, 0, PA_SEEK_RELATIVE) < 0) return 0;
    position += static_cast<std::size_t>(count);
    return size;
}

void ClipStream::drain() {
    draining.reset(pa_stream_drain(stream.get(), drained, this));
    if (!draining) become(State::finished);
}

void ClipStream::drained(pa_stream*, int, void* self) {
    static_cast<ClipStream*>(self)->become(State::finished);
}

void ClipStream::become(State state) {
    currentState = state;
    const auto notify = onChange; // may destroy this object
    notify();
}

} // namespace quiverly
