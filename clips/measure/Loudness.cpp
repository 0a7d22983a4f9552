#include "clips/measure/Loudness.h"

#include <ebur128.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <new>

namespace quiverly::clips {

namespace {

constexpr std::size_t meterHop = 480;            // samples between two measurements: 10 ms
constexpr std::size_t meterTail = 40 * meterHop; // silence after the clip, so that the last 400 ms window is complete

struct MeterRelease {
    void operator()(ebur128_state* state) const { ebur128_destroy(&state); }
};
using Meter = std::unique_ptr<ebur128_state, MeterRelease>;

Meter meter(int mode) {
    Meter meter(ebur128_init(2, static_cast<unsigned long>(sampleRate), mode));
    if (!meter) throw std::bad_alloc(); // the only way in which it can fail
    return meter;
}

Signal followedBySilence(const Stereo& sound, std::size_t silence) {
    Signal frames = interleaved(sound);
    frames.resize(frames.size() + 2 * silence);
    return frames;
}

} // namespace

double momentaryLoudness(const Stereo& sound) {
    const Meter state = meter(EBUR128_MODE_M);
    const Signal frames = followedBySilence(sound, meterTail);
    double greatest = -HUGE_VAL;
    for (std::size_t start = 0; start + 2 * meterHop <= frames.size(); start += 2 * meterHop) {
        ebur128_add_frames_double(state.get(), &frames[start], meterHop);
        double loudness = 0;
        ebur128_loudness_momentary(state.get(), &loudness);
        greatest = std::max(greatest, loudness);
    }
    return greatest;
}

double truePeak(const Stereo& sound) {
    const Meter state = meter(EBUR128_MODE_TRUE_PEAK);
    const Signal frames = followedBySilence(sound, meterHop);
    ebur128_add_frames_double(state.get(), frames.data(), frames.size() / 2);
    double left = 0;
    double right = 0;
    ebur128_true_peak(state.get(), 0, &left);
    ebur128_true_peak(state.get(), 1, &right);
    return 20 * std::log10(std::max(left, right));
}

} // namespace quiverly::clips
