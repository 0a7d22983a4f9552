#include "platform/virtual/VirtualAudio.h"

#include <utility>

#include "platform/virtual/VirtualPlatform.h"

namespace quiverly {

// Is in the platform's list for as long as it lives.
struct audio::Player {
    explicit Player(std::filesystem::path file) : clip{std::move(file)} {
        VirtualPlatform::current().audio.players.push_back(this);
    }
    ~Player() { std::erase(VirtualPlatform::current().audio.players, this); }
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;

    VirtualAudio::PlayedClip clip;
};

std::vector<VirtualAudio::PlayedClip> VirtualAudio::sounding() const {
    std::vector<PlayedClip> clips;
    for (const audio::Player* player : players) {
        if (player->clip.playing) clips.push_back(player->clip);
    }
    return clips;
}

void audio::Release::operator()(Player* player) const noexcept {
    delete player;
}

audio::PlayerHandle audio::create(const std::filesystem::path& file) {
    const auto& canOpen = VirtualPlatform::current().audio.canOpen;
    return PlayerHandle(!canOpen || canOpen(file) ? new Player(file) : nullptr);
}

void audio::setVolume(Player& player, float volume) {
    player.clip.volume = volume;
    player.clip.calls.emplace_back("setVolume");
}

void audio::prepareToPlay(Player& player) {
    player.clip.calls.emplace_back("prepareToPlay");
}

void audio::play(Player& player) {
    player.clip.playing = true;
    player.clip.calls.emplace_back("play");
    const auto& onPlay = VirtualPlatform::current().audio.onPlay;
    if (onPlay) onPlay(player.clip);
}

} // namespace quiverly
