#pragma once

#include <chrono>
#include <memory>

#include "platform/linux/sound/ClipDecoder.h"

namespace quiverly {

// A clip to play once.
struct Playback {
    using Clock = std::chrono::steady_clock;

    std::unique_ptr<ClipDecoder> clip;
    float volume; // 1 plays the clip as it is, 0 is silence
    Clock::time_point since = Clock::now();

    // A clip that started later than this after its slap would not sound like the answer to it.
    static constexpr std::chrono::seconds patience{1};

    bool isStale(Clock::time_point now = Clock::now()) const { return now - since > patience; }
};

} // namespace quiverly
