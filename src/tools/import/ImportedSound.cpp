#include "tools/import/ImportedSound.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <new>
#include <vector>

#include <ebur128.h>
#include <samplerate.h>
#include <sndfile.hh>

namespace quiverly {

namespace {

namespace fs = std::filesystem;

constexpr int clipRate = 48000;           // hertz
constexpr double longestSource = 600;     // seconds that are read at most
constexpr std::size_t longestClip = 30;   // seconds
constexpr double audibleAtStart = 0.01;   // of the peak (-40 dB)
constexpr double audibleAtEnd = 0.003;    // of the peak (-50 dB)
constexpr std::size_t lead = 240;         // frames before the first audible one: 5 ms
constexpr std::size_t fade = 1440;        // frames at the end: 30 ms
constexpr double wantedLoudness = -16;    // LUFS, momentary, as of the program's own clips
constexpr double highestPeak = -2;        // dBTP, which leaves some room to the encoder
constexpr std::size_t meterHop = 480;     // frames between two measurements: 10 ms
constexpr std::size_t meterTail = 19200;  // frames of silence that complete the last window of 400 ms
constexpr double encoderCompression = .3; // 0 best, 1 smallest

// Left and right in turn.
using Frames = std::vector<float>;

std::size_t countOf(const Frames& frames) {
    return frames.size() / 2;
}

// One channel is heard from both sides, two stay as they are, more are mixed.
Frames inStereo(const std::vector<float>& samples, std::size_t channels) {
    Frames frames;
    frames.reserve(samples.size() / channels * 2);
    for (std::size_t at = 0; at + channels <= samples.size(); at += channels) {
        if (channels == 2) {
            frames.push_back(samples[at]);
            frames.push_back(samples[at + 1]);
        } else {
            float sum = 0;
            for (std::size_t channel = 0; channel < channels; ++channel) sum += samples[at + channel];
            frames.insert(frames.end(), 2, sum / static_cast<float>(channels));
        }
    }
    return frames;
}

tl::expected<Frames, std::string> atClipRate(Frames frames, int rate) {
    if (rate == clipRate) return frames;
    const double ratio = static_cast<double>(clipRate) / rate;
    if (src_is_valid_ratio(ratio) == 0) return tl::unexpected<std::string>("Its sample rate cannot be converted.");
    Frames out(2 * static_cast<std::size_t>(static_cast<double>(countOf(frames)) * ratio + 1));
    SRC_DATA job{};
    job.data_in = frames.data();
    job.input_frames = static_cast<long>(countOf(frames));
    job.data_out = out.data();
    job.output_frames = static_cast<long>(countOf(out));
    job.src_ratio = ratio;
    if (const int error = src_simple(&job, SRC_SINC_BEST_QUALITY, 2); error != 0) {
        return tl::unexpected<std::string>(src_strerror(error));
    }
    out.resize(2 * static_cast<std::size_t>(job.output_frames_gen));
    return out;
}

tl::expected<Frames, std::string> decoded(const fs::path& file) {
    SndfileHandle in(file.string());
    if (!in || in.error() != SF_ERR_NO_ERROR) return tl::unexpected<std::string>(in.strError());
    if (in.channels() < 1 || in.samplerate() < 1) return tl::unexpected<std::string>("This is not a sound.");
    const auto channels = static_cast<std::size_t>(in.channels());
    const auto longest = static_cast<std::size_t>(longestSource * in.samplerate());
    constexpr std::size_t block = 4096; // frames
    std::vector<float> samples;
    // Read block by block: the length that a file claims is not to be trusted.
    while (samples.size() < longest * channels) {
        const std::size_t before = samples.size();
        samples.resize(before + block * channels);
        const sf_count_t read = in.readf(&samples[before], static_cast<sf_count_t>(block));
        samples.resize(before + static_cast<std::size_t>(std::max<sf_count_t>(read, 0)) * channels);
        if (read <= 0) break;
    }
    for (float& sample : samples) sample = std::isfinite(sample) ? std::clamp(sample, -8.0F, 8.0F) : 0;
    return atClipRate(inStereo(samples, channels), in.samplerate());
}

// Without the silence around it; nothing is left of a sound that is silent.
Frames trimmed(const Frames& frames) {
    float peak = 0;
    for (const float sample : frames) peak = std::max(peak, std::abs(sample));
    const auto audible = [peak](double share) {
        return [least = share * peak](float sample) { return std::abs(sample) >= least && sample != 0; };
    };
    const auto first = std::find_if(frames.begin(), frames.end(), audible(audibleAtStart));
    const auto last = std::find_if(frames.rbegin(), frames.rend(), audible(audibleAtEnd));
    if (first == frames.end()) return {};
    const auto firstFrame = static_cast<std::size_t>(first - frames.begin()) / 2;
    const std::size_t start = firstFrame - std::min(lead, firstFrame);
    const std::size_t end =
        std::min(static_cast<std::size_t>(frames.rend() - last + 1) / 2 + fade / 2, countOf(frames));
    const std::size_t length = std::min(end - start, longestClip * clipRate);
    const auto from = frames.begin() + static_cast<std::ptrdiff_t>(2 * start);
    return {from, from + static_cast<std::ptrdiff_t>(2 * length)};
}

void fadeOut(Frames& frames) {
    const std::size_t length = std::min(fade, countOf(frames) / 2);
    for (std::size_t left = 0; left < length; ++left) {
        const float gain = static_cast<float>(left) / static_cast<float>(length);
        frames[frames.size() - 1 - 2 * left] *= gain;
        frames[frames.size() - 2 - 2 * left] *= gain;
    }
}

struct MeterRelease {
    void operator()(ebur128_state* state) const { ebur128_destroy(&state); }
};

// Brings the greatest momentary loudness to the wanted one, or as close to it as the peaks allow.
void level(Frames& frames) {
    const std::unique_ptr<ebur128_state, MeterRelease> meter(
        ebur128_init(2, clipRate, EBUR128_MODE_M | EBUR128_MODE_TRUE_PEAK));
    if (!meter) throw std::bad_alloc(); // the only way in which it can fail
    Frames measured = frames;
    measured.resize(measured.size() + 2 * meterTail);
    double loudest = -HUGE_VAL;
    for (std::size_t at = 0; at + 2 * meterHop <= measured.size(); at += 2 * meterHop) {
        ebur128_add_frames_float(meter.get(), &measured[at], meterHop);
        double loudness = 0;
        ebur128_loudness_momentary(meter.get(), &loudness);
        loudest = std::max(loudest, loudness);
    }
    double left = 0;
    double right = 0;
    ebur128_true_peak(meter.get(), 0, &left);
    ebur128_true_peak(meter.get(), 1, &right);
    const double peak = 20 * std::log10(std::max({left, right, 1e-9}));
    // What is too soft to be measured is levelled by its peak alone.
    const double wanted = std::isfinite(loudest) ? wantedLoudness - loudest : HUGE_VAL;
    const auto gain = static_cast<float>(std::pow(10, std::min(wanted, highestPeak - peak) / 20));
    for (float& sample : frames) sample *= gain;
}

tl::expected<void, std::string> encode(const Frames& frames, const fs::path& clip) {
    SndfileHandle out(clip.string(), SFM_WRITE, SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III, 2, clipRate);
    if (!out) return tl::unexpected<std::string>(out.strError());
    int mode = SF_BITRATE_MODE_VARIABLE;
    double compression = encoderCompression;
    out.command(SFC_SET_COMPRESSION_LEVEL, &compression, sizeof compression);
    out.command(SFC_SET_BITRATE_MODE, &mode, sizeof mode);
    const auto count = static_cast<sf_count_t>(frames.size());
    if (out.write(frames.data(), count) != count) return tl::unexpected<std::string>(out.strError());
    return {};
}

} // namespace

tl::expected<void, std::string> importSound(const fs::path& from, const fs::path& clip) {
    const auto because = [](const fs::path& file) {
        return [&file](const std::string& reason) { return file.string() + ": " + reason; };
    };
    auto frames = decoded(from).map(trimmed).map_error(because(from));
    if (!frames) return tl::unexpected(frames.error());
    if (frames->empty()) return tl::unexpected(from.string() + ": It is silent.");
    level(*frames);
    fadeOut(*frames);
    return encode(*frames, clip).map_error(because(clip));
}

} // namespace quiverly
