#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "platform/audio.h"

namespace quiverly {

// The sound system of the virtual platform: opens no file, makes no sound, and records what would be heard.
class VirtualAudio {
public:
    // What one player was asked to do.
    struct PlayedClip {
        std::filesystem::path file;
        float volume = 1.0F;
        std::vector<std::string> calls = {}; // of the port, since it was created
        bool playing = false;
    };

    std::function<bool(const std::filesystem::path& file)> canOpen; // absent: every file can be opened
    std::function<void(const PlayedClip& clip)> onPlay;

    // The clips that sound at this moment, the oldest first.
    std::vector<PlayedClip> sounding() const;

    std::size_t lentPlayers() const { return players.size(); }

private:
    friend struct audio::Player;

    std::vector<const audio::Player*> players; // in the order in which they were created
};

} // namespace quiverly
