// The least that it takes to play a clip: libsndfile and libpulse, in a program that waits connected to the server.
// Plays the file that each line of standard input names, in place of the one before.

#include <pulse/pulseaudio.h>
#include <sndfile.h>

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "told.h"

namespace {

constexpr auto serverChoice = static_cast<std::uint32_t>(-1);

struct CloseFile {
    void operator()(SNDFILE* file) const { sf_close(file); }
};

class Floor {
public:
    bool run() {
        pa_mainloop_api* api = pa_mainloop_get_api(loop);
        context = pa_context_new(api, "floor");
        pa_context_set_state_callback(context, contextChanged, this);
        if (pa_context_connect(context, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) return false;
        api->io_new(api, STDIN_FILENO, PA_IO_EVENT_INPUT, told, this);
        int status = 1;
        pa_mainloop_run(loop, &status);
        return status == 0;
    }

private:
    static void contextChanged(pa_context* context, void* self) {
        const auto& floor = *static_cast<Floor*>(self);
        const pa_context_state_t state = pa_context_get_state(context);
        if (state == PA_CONTEXT_READY) {
            std::puts("ready");
            std::fflush(stdout);
        } else if (!PA_CONTEXT_IS_GOOD(state)) {
            pa_mainloop_quit(floor.loop, 1);
        }
    }

    static void told(pa_mainloop_api* api, pa_io_event*, int, pa_io_event_flags_t, void* self) {
        if (const auto path = toldFile()) {
            static_cast<Floor*>(self)->play(*path);
        } else {
            api->quit(api, 0);
        }
    }

    void play(const std::string& path) {
        end();
        SF_INFO info = {};
        file.reset(sf_open(path.c_str(), SFM_READ, &info));
        if (!file) return;
        channels = info.channels;
        decode();
        const pa_sample_spec format{PA_SAMPLE_FLOAT32NE, static_cast<std::uint32_t>(info.samplerate),
                                    static_cast<std::uint8_t>(info.channels)};
        const auto frame = static_cast<std::uint32_t>(pa_frame_size(&format));
        stream = pa_stream_new(context, "floor", &format, nullptr);
        pa_stream_set_write_callback(stream, dataWanted, this);
        // Requests for 5 ms at a time have PipeWire work in cycles of 5 ms; PulseAudio does so for its recorder
        // already.
        const pa_buffer_attr buffer{serverChoice, serverChoice, frame, format.rate / 200 * frame, serverChoice};
        pa_stream_connect_playback(stream, nullptr, &buffer, PA_STREAM_EARLY_REQUESTS, nullptr, nullptr);
    }

    void decode() {
        constexpr sf_count_t frames = 4800;
        samples.resize(static_cast<std::size_t>(frames * channels));
        const sf_count_t got = sf_readf_float(file.get(), samples.data(), frames);
        samples.resize(static_cast<std::size_t>(got * channels));
    }

    static void dataWanted(pa_stream*, std::size_t, void* self) { static_cast<Floor*>(self)->write(); }

    // A piece, which is on its way before the next one is wanted.
    void write() {
        if (samples.empty()) return drain();
        pa_stream_write(stream, samples.data(), samples.size() * sizeof(float), nullptr, 0, PA_SEEK_RELATIVE);
        decode();
    }

    void drain() {
        pa_stream_set_write_callback(stream, nullptr, nullptr);
        pa_operation_unref(pa_stream_drain(stream, drained, this));
    }

    static void drained(pa_stream* stream, int, void* self) {
        if (static_cast<Floor*>(self)->stream == stream) static_cast<Floor*>(self)->end();
    }

    void end() {
        if (stream == nullptr) return;
        pa_stream_set_write_callback(stream, nullptr, nullptr);
        pa_stream_disconnect(stream);
        pa_stream_unref(stream);
        stream = nullptr;
    }

    pa_mainloop* loop = pa_mainloop_new();
    pa_context* context = nullptr;
    pa_stream* stream = nullptr;
    std::unique_ptr<SNDFILE, CloseFile> file;
    int channels = 0;
    std::vector<float> samples; // the next piece
};

} // namespace

int main() {
    return Floor().run() ? 0 : 1;
}
