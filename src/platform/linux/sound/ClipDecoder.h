#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>

#include <mpg123.h>

#include "platform/linux/sound/ClipFile.h"

namespace quiverly {

// Decodes an MP3 file piece by piece, while it plays. One thread at a time.
//
// Each step reads and decodes no more than a bounded part of the file, and what the decoder remembers does not grow
// with the file. A file that turns bad in the middle ends there. Nothing is said on the terminal.
class ClipDecoder {
public:
    // Decodes the first piece. Null when the file cannot be opened or decoded, or holds no sound.
    static std::unique_ptr<ClipDecoder> open(const std::filesystem::path& file);

    std::uint32_t rate() const { return framesPerSecond; }
    std::uint8_t channels() const { return channelCount; }

    // What is decoded and not taken yet, at least a frame of it: interleaved samples, 1 being full scale. Decodes the
    // next piece when there is nothing. Empty at the end of the clip.
    std::span<const float> samples();

    // Takes whole frames from the front of samples(); those that remain stay where they are.
    void take(std::size_t sampleCount) { piece = piece.subspan(sampleCount); }

    std::size_t decodedFrames() const { return decodedSamples / channelCount; }

    // What goes beyond is cut off: half a minute in stereo is more than an answer to a slap.
    static constexpr std::size_t mostSamples = std::size_t{30} * 48'000 * 2;

private:
    struct Delete {
        void operator()(mpg123_handle* handle) const { mpg123_delete(handle); }
    };

    explicit ClipDecoder(const std::filesystem::path& path) : file(path), handle(mpg123_new(nullptr, nullptr)) {}
    bool start();
    std::span<const float> decodePiece();

    static ssize_t read(void* file, void* bytes, std::size_t size);
    static off_t seek(void* file, off_t offset, int whence);

    ClipFile file;
    std::unique_ptr<mpg123_handle, Delete> handle; // holds what `piece` shows
    std::span<const float> piece;
    std::size_t decodedSamples = 0;
    std::uint32_t framesPerSecond = 0;
    std::uint8_t channelCount = 0;
    bool ended = false;
};

} // namespace quiverly
