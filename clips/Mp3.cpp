#include "clips/Mp3.h"

#include <sndfile.hh>

namespace quiverly::clips {

namespace {

constexpr double compression = 0.45; // 0 best, 1 smallest; here about 130 kbit/s

// Written as the comment, since the encoder drops the copyright field. It is longer than an ID3v1 tag can hold, which
// makes the encoder write an ID3v2 tag as well.
constexpr auto licence = "CC0 1.0, creativecommons.org/publicdomain/zero/1.0";

tl::unexpected<std::string> failure(const std::filesystem::path& file, const std::string& reason) {
    return tl::unexpected(file.string() + ": " + reason);
}

} // namespace

tl::expected<void, std::string> writeMp3(const std::filesystem::path& file, const Stereo& sound,
                                         const std::string& title) {
    SndfileHandle out(file.string(), SFM_WRITE, SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III, 2,
                      static_cast<int>(sampleRate));
    if (!out) return failure(file, out.strError());
    int mode = SF_BITRATE_MODE_VARIABLE;
    double level = compression;
    if (out.command(SFC_SET_COMPRESSION_LEVEL, &level, sizeof level) != SF_TRUE ||
        out.command(SFC_SET_BITRATE_MODE, &mode, sizeof mode) != SF_TRUE) {
        return failure(file, "The encoder refused its settings.");
    }
    out.setString(SF_STR_TITLE, title.c_str());
    out.setString(SF_STR_ARTIST, "Quiverly");
    out.setString(SF_STR_COMMENT, licence);
    const Signal frames = interleaved(sound);
    if (out.write(frames.data(), static_cast<sf_count_t>(frames.size())) != static_cast<sf_count_t>(frames.size())) {
        return failure(file, out.strError());
    }
    return {};
}

tl::expected<Stereo, std::string> readMp3(const std::filesystem::path& file) {
    SndfileHandle in(file.string());
    if (!in) return failure(file, in.strError());
    if (in.samplerate() != static_cast<int>(sampleRate) || in.channels() != 2) {
        return failure(file, "This is not stereo at 48 kHz.");
    }
    std::vector<double> samples(2 * static_cast<std::size_t>(in.frames()));
    const auto read = static_cast<std::size_t>(in.readf(samples.data(), in.frames()));
    Stereo sound;
    for (std::size_t index = 0; index < read; ++index) {
        sound.left.push_back(samples[2 * index]);
        sound.right.push_back(samples[2 * index + 1]);
    }
    return sound;
}

} // namespace quiverly::clips
