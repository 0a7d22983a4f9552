#include "platform/linux/sound/ClipStream.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include <pulse/rtclock.h>
#include <pulse/sample.h>
#include <pulse/timeval.h>

namespace quiverly {

namespace {

constexpr auto serverChoice = static_cast<std::uint32_t>(-1);
constexpr double beginning = 0.1;    // seconds of the clip that the server has when it starts
constexpr double briefCycle = 0.01;  // seconds
constexpr double usualCycle = 0.025; // seconds

std::uint32_t bytesOf(double seconds, const pa_sample_spec& format) {
    return static_cast<std::uint32_t>(seconds * format.rate) * static_cast<std::uint32_t>(pa_frame_size(&format));
}

} // namespace

void ClipStream::Disconnect::operator()(pa_stream* stream) const {
    pa_stream_set_state_callback(stream, nullptr, nullptr);
    pa_stream_set_write_callback(stream, nullptr, nullptr);
    pa_stream_set_started_callback(stream, nullptr, nullptr);
    pa_stream_disconnect(stream);
    pa_stream_unref(stream);
}

void ClipStream::Cancel::operator()(pa_operation* operation) const {
    pa_operation_cancel(operation);
    pa_operation_unref(operation);
}

ClipStream::ClipStream(pa_mainloop_api& api, pa_context& context, Cycles cycles, std::unique_ptr<Playback> ownPlayback,
                       std::function<void()> onChange)
    : context(context),
      playback(std::move(ownPlayback)),
      onChange(std::move(onChange)),
      nextPiece(pa_context_rttime_new(&context, PA_USEC_INVALID, nextPieceIsDue, this), FreeTimer{&api}) {
    const ClipDecoder& clip = *playback->clip;
    framesUntilStart = static_cast<std::size_t>(beginning * clip.rate());
    const pa_sample_spec format{PA_SAMPLE_FLOAT32NE, clip.rate(), clip.channels()};
    stream.reset(pa_stream_new(&context, "Slap", &format, nullptr));
    if (!stream || !connect(cycles)) currentState = State::finished;
}

ClipStream::~ClipStream() = default;

// A stream that ran dry goes on with the first frame that the server has. With no frame at all to wait for, draining
// would never end.
bool ClipStream::connect(Cycles cycles) {
    const pa_sample_spec& format = *pa_stream_get_sample_spec(stream.get());
    const auto frame = static_cast<std::uint32_t>(pa_frame_size(&format));
    pa_buffer_attr buffer{serverChoice, serverChoice, frame, serverChoice, serverChoice};
    int flags = PA_STREAM_START_CORKED;
    if (cycles == Cycles::brief) {
        flags |= PA_STREAM_EARLY_REQUESTS;
        buffer.minreq = bytesOf(briefCycle, format);
        pa_stream_set_started_callback(stream.get(), started, this);
    }
    if (pa_stream_connect_playback(stream.get(), nullptr, &buffer, static_cast<pa_stream_flags_t>(flags), nullptr,
                                   nullptr) < 0)
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
        clipStream.become(clipStream.playback->isStale() ? State::finished : State::sounding);
    }
}

// Where the server has no realtime scheduling, brief cycles could tear the clip.
void ClipStream::started(pa_stream* stream, void*) {
    const pa_sample_spec& format = *pa_stream_get_sample_spec(stream);
    pa_buffer_attr buffer = *pa_stream_get_buffer_attr(stream);
    buffer.minreq = bytesOf(usualCycle, format);
    pa_operation* change = pa_stream_set_buffer_attr(stream, &buffer, nullptr, nullptr);
    if (change != nullptr) pa_operation_unref(change);
}

void ClipStream::dataWanted(pa_stream*, std::size_t, void* self) {
    static_cast<ClipStream*>(self)->feed();
}

void ClipStream::nextPieceIsDue(pa_mainloop_api*, pa_time_event*, const timeval*, void* self) {
    static_cast<ClipStream*>(self)->feed();
}

// Writes a piece of the clip, as far as the server wants it.
void ClipStream::feed() {
    if (draining) return;
    ClipDecoder& clip = *playback->clip;
    const std::span<const float> samples = clip.samples();
    if (samples.empty()) return drain();
    const std::size_t wanted = pa_stream_writable_size(stream.get());
    if (wanted == static_cast<std::size_t>(-1)) return become(State::finished);
    const std::size_t wantedFrames = wanted / pa_frame_size(pa_stream_get_sample_spec(stream.get()));
    const std::size_t count = std::min(samples.size(), wantedFrames * clip.channels());
    if (count == 0) return start(); // the server has no room for more
    if (!write(samples.first(count))) return become(State::finished);
    clip.take(count);
    framesUntilStart -= std::min(framesUntilStart, count / clip.channels());
    if (framesUntilStart == 0) start();
    pa_context_rttime_restart(&context, nextPiece.get(), pa_rtclock_now());
}

bool ClipStream::write(std::span<const float> samples) {
    void* memory = nullptr;
    std::size_t size = samples.size_bytes();
    if (pa_stream_begin_write(stream.get(), &memory, &size) < 0 || size < samples.size_bytes()) return false;
    std::ranges::transform(samples, static_cast<float*>(memory),
                           [volume = playback->volume](float sample) { return sample * volume; });
    return pa_stream_write(stream.get(), memory, samples.size_bytes(), nullptr, 0, PA_SEEK_RELATIVE) == 0;
}

void ClipStream::start() {
    if (!starting) starting.reset(pa_stream_cork(stream.get(), 0, nullptr, nullptr));
}

void ClipStream::drain() {
    start();
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
