#include "sound/SoundPlayer.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "platform/bundle.h"
#include "platform/random.h"

namespace quiverly {

namespace {

constexpr double escalationMemory = 300.0;     // seconds a slap counts toward escalation
constexpr double escalationTimeConstant = 8.0; // slaps

constexpr double softestVolume = 0.45;
constexpr double volumePerG = 1.2;
constexpr double leastPreviewAmplitude = 0.35; // g

std::vector<std::filesystem::path> clipsOf(SoundPack pack) {
    auto clips = bundle::files("mp3", std::filesystem::path("audio") / pack.folder());
    if (!clips) clips = bundle::files("mp3", pack.folder());
    if (!clips) return {};
    std::sort(clips->begin(), clips->end(), [](const auto& a, const auto& b) {
        return bundle::precedes(a.filename().string(), b.filename().string());
    });
    return *std::move(clips);
}

float volumeFor(double amplitude) {
    const double volume = softestVolume + volumePerG * amplitude;
    return static_cast<float>(volume < 1.0 ? volume : 1.0);
}

} // namespace

void SoundPlayer::load(SoundPack newPack) {
    pack = newPack;
    files = clipsOf(newPack);
}

void SoundPlayer::playSlap(double amplitude, bool muted) {
    if (muted || files.empty()) return;
    play(pack.escalates() ? escalatedFile() : files[random::uniformIndex(files.size())], amplitude);
}

// Counts one more slap, and chooses a clip by how many there were of late.
const SoundPlayer::Path& SoundPlayer::escalatedFile() {
    const calendar::TimePoint now = calendar::now();
    slapTimes.push_back(now);
    std::erase_if(slapTimes, [now](auto time) { return calendar::elapsed(time, now) >= escalationMemory; });

    const auto slaps = static_cast<double>(slapTimes.size());
    const auto count = static_cast<double>(files.size());
    const auto step = static_cast<std::int64_t>(count * (1 - std::exp(-(slaps - 1) / escalationTimeConstant)));
    const auto last = static_cast<std::int64_t>(files.size()) - 1;
    return files[static_cast<std::size_t>(std::clamp<std::int64_t>(step, 0, last))];
}

void SoundPlayer::playHardwarePreview(double amplitude) {
    const SoundPack current = pack;
    load(SoundPack::sexy);
    if (!files.empty()) play(previewFile(), std::max(amplitude, leastPreviewAmplitude));
    load(current);
}

const SoundPlayer::Path& SoundPlayer::previewFile() const {
    for (const Path& file : files) {
        if (file.filename() == "28.mp3") return file;
    }
    for (const Path& file : files) {
        if (file.filename().string().find("28") != std::string::npos) return file;
    }
    return files[files.size() / 5];
}

void SoundPlayer::play(const Path& file, double amplitude) {
    auto next = audio::create(file);
    if (!next) return;
    audio::setVolume(*next, volumeFor(amplitude));
    audio::prepareToPlay(*next);
    audio::play(*next);
    player = std::move(next);
}

} // namespace quiverly
