#include "platform/linux/sound/Clip.h"

#include <fcntl.h>
#include <pulse/sample.h>
#include <sndfile.h>
#include <sys/stat.h>

#include <algorithm>
#include <utility>

#include "sockets/FileDescriptor.h"

namespace quiverly {

namespace {

struct Close {
    void operator()(SNDFILE* file) const { sf_close(file); }
};

using SoundFile = std::unique_ptr<SNDFILE, Close>;

// Opening a pipe or a device could wait, so only regular files are read.
FileDescriptor openRegularFile(const std::filesystem::path& path) {
    FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status {};
    const bool isRegular = file && ::fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode);
    return isRegular ? std::move(file) : FileDescriptor();
}

bool isPlayable(const SF_INFO& info) {
    return info.samplerate > 0 && info.samplerate <= static_cast<int>(PA_RATE_MAX) && info.channels > 0 &&
           info.channels <= static_cast<int>(PA_CHANNELS_MAX);
}

// Reads piece by piece: the number of frames a file announces is no more than a guess.
std::vector<float> readSamples(SNDFILE& file, std::size_t channels) {
    constexpr std::size_t pieceFrames = 16'384;
    const std::size_t mostSamples = Clip::mostSamples / channels * channels;
    std::vector<float> samples;
    std::size_t size = 0;
    while (size < mostSamples) {
        samples.resize(std::min(size + pieceFrames * channels, mostSamples));
        const auto wanted = static_cast<sf_count_t>((samples.size() - size) / channels);
        const sf_count_t frames = sf_readf_float(&file, &samples[size], wanted);
        if (frames <= 0) break;
        size += static_cast<std::size_t>(frames) * channels;
    }
    samples.resize(size);
    return samples;
}

} // namespace

std::shared_ptr<const Clip> Clip::decode(const std::filesystem::path& path) {
    const FileDescriptor descriptor = openRegularFile(path);
    if (!descriptor) return nullptr;
    SF_INFO info{};
    const SoundFile file(sf_open_fd(descriptor.get(), SFM_READ, &info, SF_FALSE));
    if (!file || !isPlayable(info)) return nullptr;
    const auto channels = static_cast<std::uint8_t>(info.channels);
    std::vector<float> samples = readSamples(*file, channels);
    if (samples.empty()) return nullptr;
    return std::make_shared<const Clip>(
        Clip{std::move(samples), static_cast<std::uint32_t>(info.samplerate), channels});
}

} // namespace quiverly
