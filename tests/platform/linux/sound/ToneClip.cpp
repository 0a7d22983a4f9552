#include "platform/linux/sound/ToneClip.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

namespace quiverly {

void ToneClip::write(const std::filesystem::path& file) const {
    const auto frames = static_cast<std::size_t>(seconds * rate);
    std::vector<float> samples;
    samples.reserve(frames * static_cast<std::size_t>(channels));
    for (std::size_t frame = 0; frame < frames; ++frame) {
        const double time = static_cast<double>(frame) / rate;
        const auto sample = static_cast<float>(0.5 * std::sin(2 * std::numbers::pi * pitch * time));
        samples.insert(samples.end(), static_cast<std::size_t>(channels), sample);
    }
    SF_INFO info{};
    info.samplerate = rate;
    info.channels = channels;
    info.format = format;
    SNDFILE* sound = sf_open(file.c_str(), SFM_WRITE, &info);
    ASSERT_TRUE(sound) << sf_strerror(nullptr);
    if (bitRateMode != SF_BITRATE_MODE_CONSTANT) {
        double level = 0.5; // the mode counts from there
        EXPECT_EQ(sf_command(sound, SFC_SET_COMPRESSION_LEVEL, &level, sizeof level), SF_TRUE);
        int mode = bitRateMode;
        EXPECT_EQ(sf_command(sound, SFC_SET_BITRATE_MODE, &mode, sizeof mode), SF_TRUE);
    }
    EXPECT_EQ(sf_writef_float(sound, samples.data(), static_cast<sf_count_t>(frames)), std::ssize(samples) / channels);
    EXPECT_EQ(sf_close(sound), 0);
}

} // namespace quiverly
