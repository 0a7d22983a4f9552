#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "clips/synthesis/Random.h"
#include "clips/synthesis/Signal.h"
#include "sound/SoundPack.h"

namespace quiverly::clips {

// One line of a pack's score: what the clip is called, the seed of its chance, and how it is put together.
struct Clip {
    std::string title;
    std::uint64_t seed;
    std::function<Stereo(Random&)> compose;
};

// The clips of one pack in playing order: the file of the first is 1.mp3.
struct Pack {
    SoundPack name;
    std::vector<Clip> clips; // in a pack that escalates from the mildest to the strongest
};

Pack painPack();
Pack sexyPack();
Pack haloPack();
Pack lizardPack();

// All packs, in the order in which they are offered.
std::vector<Pack> allPacks();

// Makes one clip or every clip, each in its file below the folder. Throws std::runtime_error when a file cannot be
// written or speech cannot be had.
void make(const Pack& pack, std::size_t index, const std::filesystem::path& folder);
void makeAll(const std::filesystem::path& folder);

// The clip's file below the folder that holds all packs.
std::filesystem::path fileOf(const Pack& pack, std::size_t index);

} // namespace quiverly::clips
