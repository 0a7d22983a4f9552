// What a clip may hold. However it is broken, it is decoded in whole frames, in small pieces, and to an end.

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "platform/linux/sound/ClipDecoder.h"
#include "sockets/FileDescriptor.h"

using namespace quiverly;

namespace {

constexpr std::size_t mostFramesPerPiece = 1'152; // of an MP3

void require(bool condition) {
    if (!condition) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const FileDescriptor file(::memfd_create("clip", MFD_CLOEXEC));
    require(file && ::write(file.get(), data, size) == static_cast<ssize_t>(size));
    const auto clip = ClipDecoder::open("/proc/self/fd/" + std::to_string(file.get()));
    if (!clip) return 0;
    require(clip->rate() >= 8'000 && clip->rate() <= 48'000);
    require(clip->channels() == 1 || clip->channels() == 2);
    require(clip->decodedFrames() > 0 && clip->decodedFrames() <= mostFramesPerPiece);
    std::vector<float> samples; // copied, so that each is read
    for (auto piece = clip->samples(); !piece.empty(); piece = clip->samples()) {
        require(piece.size() % clip->channels() == 0);
        require(piece.size() <= mostFramesPerPiece * clip->channels());
        samples.insert(samples.end(), piece.begin(), piece.end());
        clip->take(piece.size());
    }
    require(samples.size() <= ClipDecoder::mostSamples);
    require(clip->decodedFrames() == samples.size() / clip->channels());
    require(clip->samples().empty()); // an end is an end
    return 0;
}
