#include "platform/audio.h"

#include <algorithm>
#include <cstdint>
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
    std::filesystem::path file;
    std::unique_ptr<ClipDecoder> clip; // for the next play(); the first one has what create() opened
    float volume = 1.0F;
    std::uint64_t playback = 0; // the last one; 0 before the first
};

void audio::Release::operator()(Player* player) const noexcept {
    output().end(player->playback);
    delete player;
}

audio::PlayerHandle audio::create(const std::filesystem::path& file) {
    auto clip = ClipDecoder::open(file);
    return PlayerHandle(clip ? new Player{file, std::move(clip)} : nullptr);
}

void audio::setVolume(Player& player, float volume) {
    player.volume = std::max(volume, 0.0F);
}

void audio::prepareToPlay(Player&) {} // create() has decoded how the clip begins, and play() connects to the server

void audio::play(Player& player) {
    if (!player.clip) player.clip = ClipDecoder::open(player.file);
    if (!player.clip) return;
    player.playback = output().play(std::make_unique<Playback>(Playback{std::move(player.clip), player.volume}));
}

} // namespace quiverly
