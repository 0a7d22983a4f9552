#pragma once

#include <cstdint>
#include <memory>

#include "platform/linux/sound/Playback.h"
#include "platform/linux/sound/SoundThread.h"

namespace quiverly {

// Plays one clip at a time through the user's sound server. Main thread.
//
// No operation waits: the sound thread does what they ask for. It starts with the first clip. When it has ended because
// the system refused it something, the next clip starts another.
class SoundOutput {
public:
    // Plays the clip from its start and cuts off the one before. The number is for end().
    std::uint64_t play(std::unique_ptr<Playback> playback);

    // Ends that playback, unless another one has cut it off.
    void end(std::uint64_t playback);

private:
    std::unique_ptr<SoundThread> thread;
    std::uint64_t latest = 0; // number of the last playback
};

} // namespace quiverly
