#include "platform/audio.h"

#import <AVFoundation/AVFoundation.h>

namespace quiverly {

struct audio::Player {
    AVAudioPlayer* player;
};

// A player that nobody holds falls silent.
void audio::Release::operator()(Player* player) const noexcept {
    delete player;
}

audio::PlayerHandle audio::create(const std::filesystem::path& file) {
    NSURL* const url = [NSURL fileURLWithFileSystemRepresentation:file.c_str() isDirectory:NO relativeToURL:nil];
    AVAudioPlayer* const player = [[AVAudioPlayer alloc] initWithContentsOfURL:url error:nil];
    return PlayerHandle(player != nil ? new Player{player} : nullptr);
}

void audio::setVolume(Player& player, float volume) {
    player.player.volume = volume;
}

void audio::prepareToPlay(Player& player) {
    [player.player prepareToPlay];
}

void audio::play(Player& player) {
    [player.player play];
}

} // namespace quiverly
