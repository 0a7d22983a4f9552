#pragma once

#include <filesystem>
#include <memory>

// Players of one sound file each. Main thread; no operation waits for the sound system, and none reports a failure
// later than create(): what cannot be heard is silent. On macOS the system's player may wait in prepareToPlay() and
// play() for an output that sleeps, such as a Bluetooth loudspeaker.
namespace quiverly::audio {

struct Player;

struct Release {
    void operator()(Player*) const noexcept; // ends the sound
};

using PlayerHandle = std::unique_ptr<Player, Release>;

// Null when the file cannot be opened or decoded.
PlayerHandle create(const std::filesystem::path& file);

// 1 plays the file as it is, 0 is silence; takes effect at the next play().
void setVolume(Player& player, float volume);
void prepareToPlay(Player& player);
void play(Player& player);

} // namespace quiverly::audio
