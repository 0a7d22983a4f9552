#include "platform/linux/sound/ClipDecoder.h"

#include <algorithm>
#include <utility>

namespace quiverly {

namespace {

// Frames of the file to decode for one piece. The first ones hold nothing but what the encoder added.
constexpr int mostFramesPerPiece = 16;

} // namespace

std::unique_ptr<ClipDecoder> ClipDecoder::open(const std::filesystem::path& path) {
    std::unique_ptr<ClipDecoder> decoder(new ClipDecoder(path));
    return decoder->start() ? std::move(decoder) : nullptr;
}

bool ClipDecoder::start() {
    if (!handle) return false;
    constexpr int flags =
        MPG123_QUIET | MPG123_FORCE_FLOAT | MPG123_GAPLESS | MPG123_NO_FRANKENSTEIN | MPG123_SKIP_ID3V2;
    mpg123_param(handle.get(), MPG123_ADD_FLAGS, flags, 0);
    mpg123_param(handle.get(), MPG123_REMOVE_FLAGS, MPG123_AUTO_RESAMPLE, 0);
    mpg123_param(handle.get(), MPG123_INDEX_SIZE, 0, 0); // the index serves seeking only
    mpg123_replace_reader_handle(handle.get(), read, seek, nullptr);
    long rate = 0;
    int channels = 0;
    int encoding = 0;
    if (mpg123_open_handle(handle.get(), &file) != MPG123_OK ||
        mpg123_getformat(handle.get(), &rate, &channels, &encoding) != MPG123_OK || encoding != MPG123_ENC_FLOAT_32)
        return false;
    framesPerSecond = static_cast<std::uint32_t>(rate);
    channelCount = static_cast<std::uint8_t>(channels);
    return !samples().empty();
}

std::span<const float> ClipDecoder::samples() {
    if (piece.empty() && !ended) {
        piece = decodePiece();
        decodedSamples += piece.size();
        ended = piece.empty();
    }
    return piece;
}

std::span<const float> ClipDecoder::decodePiece() {
    file.beginPiece();
    for (int frame = 0; frame < mostFramesPerPiece; ++frame) {
        unsigned char* bytes = nullptr;
        std::size_t size = 0;
        if (mpg123_decode_frame(handle.get(), nullptr, &bytes, &size) != MPG123_OK) return {};
        if (size == 0) continue;
        const std::span decoded(static_cast<const float*>(static_cast<void*>(bytes)), size / sizeof(float));
        return decoded.first(std::min(decoded.size(), mostSamples - decodedSamples));
    }
    return {};
}

ssize_t ClipDecoder::read(void* file, void* bytes, std::size_t size) {
    return static_cast<ssize_t>(static_cast<ClipFile*>(file)->read({static_cast<std::byte*>(bytes), size}));
}

off_t ClipDecoder::seek(void* file, off_t offset, int whence) {
    return static_cast<ClipFile*>(file)->seek(offset, whence);
}

} // namespace quiverly
