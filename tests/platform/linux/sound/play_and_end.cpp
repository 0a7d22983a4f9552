// Plays a clip, waits until there is a file of that name, plays the clip once more and ends: play-and-end CLIP FILE.

#include <cstdio>
#include <filesystem>
#include <thread>

#include "platform/audio.h"

int main(int argc, char** argv) {
    using namespace quiverly;
    const auto player = argc == 3 ? audio::create(argv[1]) : nullptr;
    if (!player) {
        std::fprintf(stderr, "usage: %s CLIP FILE\n", argv[0]);
        return 2;
    }
    audio::prepareToPlay(*player);
    audio::play(*player);
    while (!std::filesystem::exists(argv[2])) std::this_thread::yield();
    audio::play(*player);
    return 0;
}
