#include "clips/Minute.h"

#include <algorithm>
#include <utility>

#include <sndfile.hh>

#include "clips/Mp3.h"

namespace quiverly::clips {

namespace {

constexpr double minute = 60;         // seconds
constexpr double shortestPause = 0.2; // seconds

void append(Stereo& sum, const Stereo& part, double pause) {
    for (const auto& [all, more] : {std::pair{&sum.left, &part.left}, std::pair{&sum.right, &part.right}}) {
        all->insert(all->end(), more->begin(), more->end());
        all->resize(all->size() + samplesIn(pause));
    }
}

} // namespace

tl::expected<void, std::string> writeMinute(const PackRecipe& recipe, const std::filesystem::path& audio,
                                            const std::filesystem::path& file) {
    std::vector<Stereo> clips;
    double rest = minute;
    for (std::size_t index = 0; index < recipe.clips.size(); ++index) {
        auto clip = readMp3(audio / recipe.fileOf(index));
        if (!clip) return tl::unexpected(clip.error());
        rest -= secondsOf(*clip);
        clips.push_back(*std::move(clip));
    }
    const double pause = std::max(shortestPause, rest / static_cast<double>(clips.size()));
    Stereo sound;
    for (const Stereo& clip : clips) append(sound, clip, pause);

    const Signal frames = interleaved(sound);
    SndfileHandle out(file.string(), SFM_WRITE, SF_FORMAT_WAV | SF_FORMAT_PCM_16, 2, static_cast<int>(sampleRate));
    const auto count = static_cast<sf_count_t>(sound.left.size());
    if (!out || out.writef(frames.data(), count) != count) {
        return tl::unexpected(file.string() + ": " + out.strError());
    }
    return {};
}

} // namespace quiverly::clips
