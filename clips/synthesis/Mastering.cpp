#include "clips/synthesis/Mastering.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <functional>

#include "clips/measure/Loudness.h"
#include "clips/synthesis/Filter.h"

namespace quiverly::clips {

namespace {

constexpr double rumbleHertz = 70;     // below it a laptop only rattles
constexpr double ceiling = 0.66;       // -3.6 dBFS: 2.1 dB for peaks between samples and for the encoder
constexpr double audiblePeak = 0.04;   // of the peak: where a clip starts (-28 dB)
constexpr double fadedPeak = 0.0025;   // of the peak: where a clip has died away (-52 dB)
constexpr double longestSound = 3.8;   // seconds
constexpr double startFade = 0.0015;   // seconds
constexpr double endFade = 0.06;       // seconds
constexpr double endSilence = 0.01;    // seconds
constexpr double limiterReach = 0.004; // seconds that the limiter looks ahead and back
constexpr double closeEnough = 0.02;   // LU
constexpr int loudnessRounds = 8;      // each makes up for most of what the limiter took away

double peakAt(const Stereo& sound, std::size_t index) {
    return std::max(std::abs(sound.left[index]), std::abs(sound.right[index]));
}

double peakOfBoth(const Stereo& sound) {
    return std::max(peakOf(sound.left), peakOf(sound.right));
}

template<typename Change>
void eachChannel(Stereo& sound, Change change) {
    change(sound.left);
    change(sound.right);
}

void scale(Stereo& sound, double gain) {
    eachChannel(sound, [gain](Signal& channel) {
        for (double& sample : channel) sample *= gain;
    });
}

Stereo trimmed(Stereo sound) {
    const double peak = peakOfBoth(sound);
    std::size_t start = 0;
    while (start < sound.left.size() && peakAt(sound, start) < audiblePeak * peak) ++start;
    std::size_t end = sound.left.size();
    while (end > start && peakAt(sound, end - 1) < fadedPeak * peak) --end;
    end = std::min(end, start + samplesIn(longestSound));
    eachChannel(sound, [start, end](Signal& channel) {
        channel = Signal(channel.begin() + static_cast<std::ptrdiff_t>(start),
                         channel.begin() + static_cast<std::ptrdiff_t>(end));
        const double length = static_cast<double>(channel.size()) / sampleRate;
        const double fade = std::min(endFade, length / 4);
        channel = faded(std::move(channel), {{0, 0}, {startFade / length, 1}, {1 - fade / length, 1}, {1, 0}});
        channel.resize(channel.size() + samplesIn(endSilence));
    });
    return sound;
}

// The least gain within reach of each sample.
Signal leastAround(const Signal& gains, std::size_t reach) {
    Signal least(gains.size());
    std::deque<std::size_t> rising; // candidates, their gains rising
    for (std::size_t index = 0; index < gains.size() + reach; ++index) {
        if (index < gains.size()) {
            while (!rising.empty() && gains[rising.back()] >= gains[index]) rising.pop_back();
            rising.push_back(index);
        }
        if (index >= reach) {
            while (rising.front() + 2 * reach < index) rising.pop_front();
            least[index - reach] = gains[rising.front()];
        }
    }
    return least;
}

// The mean over the samples within reach, at the ends over those that exist.
Signal meanAround(const Signal& gains, std::size_t reach) {
    Signal sums(gains.size() + 1);
    for (std::size_t index = 0; index < gains.size(); ++index) sums[index + 1] = sums[index] + gains[index];
    Signal means(gains.size());
    for (std::size_t index = 0; index < gains.size(); ++index) {
        const std::size_t first = index > reach ? index - reach : 0;
        const std::size_t last = std::min(index + reach + 1, gains.size());
        means[index] = (sums[last] - sums[first]) / static_cast<double>(last - first);
    }
    return means;
}

// No sample above the ceiling; the gain moves too slowly to be heard as distortion.
Stereo limited(Stereo sound) {
    Signal gains(sound.left.size());
    for (std::size_t index = 0; index < gains.size(); ++index) {
        gains[index] = std::min(1.0, ceiling / std::max(peakAt(sound, index), 1e-9));
    }
    const std::size_t reach = samplesIn(limiterReach);
    gains = meanAround(leastAround(gains, reach), reach);
    eachChannel(sound, [&gains](Signal& channel) {
        std::transform(channel.begin(), channel.end(), gains.begin(), channel.begin(), std::multiplies<>());
    });
    return sound;
}

} // namespace

Stereo mastered(Stereo sound, double loudness) {
    eachChannel(sound, [](Signal& channel) { channel = highPassed(std::move(channel), rumbleHertz); });
    sound = trimmed(std::move(sound));
    Stereo result = sound;
    double missing = loudness - momentaryLoudness(result);
    for (int round = 0; round < loudnessRounds && std::abs(missing) > closeEnough; ++round) {
        scale(sound, std::pow(10, missing / 20));
        result = limited(sound);
        missing = loudness - momentaryLoudness(result);
    }
    return result;
}

} // namespace quiverly::clips
