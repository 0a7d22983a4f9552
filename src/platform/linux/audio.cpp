#include "platform/audio.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <utility>

#include "platform/linux/sound/SoundOutput.h"

namespace quiverly {

namespace {

SoundOutput& output() {
    static SoundOutput output;
    return output;
}

} // namespace

struct audio::Player {
    std::shared_ptr<const Clip> clip;
    float volume = 1.0F;
    std::uint64_t playback = 0; // the last one; 0 before the first
};

void audio::Release::operator()(Player* player) const noexcept {
    output().end(player->playback);
    delete player;
}

audio::PlayerHandle audio::create(const std::filesystem::path& file) {
    auto clip = Clip::decode(file);
    return PlayerHandle(clip ? new Player{std::move(clip)} : nullptr);
}

void audio::setVolume(Player& player, float volume) {
    player.volume = std::max(volume, 0.0F);
}

void audio::prepareToPlay(Player&) {} // create() has decoded the clip, and play() connects to the server

void audio::play(Player& player) {
    player.playback = output().play(std::make_unique<Playback>(Playback{player.clip, player.volume}));
}

} // namespace quiverly
