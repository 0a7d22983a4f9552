#include "platform/linux/sound/SoundOutput.h"

#include <utility>

namespace quiverly {

std::uint64_t SoundOutput::play(std::unique_ptr<Playback> playback) {
    if (!thread || !thread->isRunning()) thread = std::make_unique<SoundThread>();
    thread->play(std::move(playback));
    return ++latest;
}

void SoundOutput::end(std::uint64_t playback) {
    if (playback == latest && thread) thread->play(nullptr);
}

} // namespace quiverly
