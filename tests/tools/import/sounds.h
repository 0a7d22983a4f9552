#pragma once

#include <cmath>
#include <filesystem>
#include <numbers>
#include <stdexcept>
#include <vector>

#include <sndfile.hh>

namespace quiverly {

// A sound file for tests: its channels in turn.
struct TestSound {
    int rate = 48000; // hertz
    int channels = 2;
    std::vector<float> samples = {};

    double seconds() const { return static_cast<double>(samples.size()) / channels / rate; }
};

// Silence, a tone of 1 kHz in every channel, and silence again.
inline TestSound toneBetweenSilence(double before, double tone, double after, float gain, int rate = 48000,
                                    int channels = 2) {
    TestSound sound{.rate = rate, .channels = channels};
    const auto frames = static_cast<int>((before + tone + after) * rate);
    for (int frame = 0; frame < frames; ++frame) {
        const double time = static_cast<double>(frame) / rate - before;
        const bool sounding = time >= 0 && time < tone;
        const auto sample = static_cast<float>(sounding ? std::cos(2000 * std::numbers::pi * time) : 0);
        sound.samples.insert(sound.samples.end(), static_cast<std::size_t>(channels), gain * sample);
    }
    return sound;
}

inline std::filesystem::path written(const TestSound& sound, const std::filesystem::path& file,
                                     int format = SF_FORMAT_WAV | SF_FORMAT_FLOAT) {
    SndfileHandle out(file.string(), SFM_WRITE, format, sound.channels, sound.rate);
    const auto count = static_cast<sf_count_t>(sound.samples.size());
    if (!out || out.write(sound.samples.data(), count) != count)
        throw std::runtime_error("Cannot write " + file.string());
    return file;
}

inline TestSound soundOf(const std::filesystem::path& file) {
    SndfileHandle in(file.string());
    if (!in) throw std::runtime_error("Cannot read " + file.string());
    TestSound sound{.rate = in.samplerate(), .channels = in.channels()};
    sound.samples.resize(static_cast<std::size_t>(in.frames() * in.channels()));
    const sf_count_t frames = in.readf(sound.samples.data(), in.frames());
    sound.samples.resize(static_cast<std::size_t>(frames * in.channels()));
    return sound;
}

} // namespace quiverly
