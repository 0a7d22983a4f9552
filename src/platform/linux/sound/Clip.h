#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

namespace quiverly {

// A sound file, decoded whole: interleaved samples, 1 being full scale.
struct Clip {
    std::vector<float> samples; // at least one frame
    std::uint32_t rate;         // frames a second
    std::uint8_t channels;

    // Null when the file cannot be opened or decoded or is silent for want of a single frame. Any format libsndfile
    // knows will do, whatever the file is called. What goes beyond mostSamples is cut off: a clip answers a slap, and a
    // film's sound track must not fill the memory, nor keep the window waiting while it is decoded.
    static std::shared_ptr<const Clip> decode(const std::filesystem::path& file);

    static constexpr std::size_t mostSamples = std::size_t{30} * 48'000 * 2; // half a minute in stereo
};

} // namespace quiverly
