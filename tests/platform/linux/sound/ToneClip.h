#pragma once

#include <filesystem>
#include <ostream>

#include <sndfile.h>

namespace quiverly {

// A sound file that holds one pure tone at half of full scale.
struct ToneClip {
    int pitch; // in Hz
    double seconds = 0.5;
    int rate = 48'000;
    int channels = 2;
    int format = SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III;
    int bitRateMode = SF_BITRATE_MODE_CONSTANT; // of an MP3

    void write(const std::filesystem::path& file) const;

    // How it is called in a test's name.
    friend void PrintTo(const ToneClip& clip, std::ostream* stream) {
        *stream << clip.pitch << "Hz_" << clip.seconds << "s_at" << clip.rate << 'x' << clip.channels;
    }
};

} // namespace quiverly
