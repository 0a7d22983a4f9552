#include "clips/synthesis/Room.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace quiverly::clips {

namespace {

constexpr std::size_t pathCount = 8;

// Paths of 16 to 52 ms, in samples: primes, so that no two echoes fall together.
constexpr std::array<std::size_t, pathCount> pathLengths{769, 953, 1171, 1373, 1607, 1861, 2137, 2477};

// One path through the room: a delay, darkened and weakened by the walls.
class Path {
public:
    Path(std::size_t length, const Room& room)
        : echo(length),
          gain(std::pow(10, -3 * static_cast<double>(length) / (room.seconds * sampleRate))),
          darkening(std::exp(-2 * std::numbers::pi * room.brightness / sampleRate)) {}

    double out() {
        dulled = (1 - darkening) * echo[position] + darkening * dulled;
        return gain * dulled;
    }

    void in(double sample) {
        echo[position] = sample;
        position = (position + 1) % echo.size();
    }

private:
    Signal echo;
    double gain;
    double darkening;
    double dulled = 0;
    std::size_t position = 0;
};

// Feeds every path from all of them with equal loudness (a Hadamard matrix, applied as butterflies).
void scatter(std::array<double, pathCount>& echoes) {
    for (std::size_t half = 1; half < pathCount; half *= 2) {
        for (std::size_t index = 0; index < pathCount; ++index) {
            if ((index & half) == 0) {
                const double sum = echoes[index] + echoes[index + half];
                echoes[index + half] = echoes[index] - echoes[index + half];
                echoes[index] = sum;
            }
        }
    }
    for (double& echo : echoes) echo /= std::sqrt(static_cast<double>(pathCount));
}

} // namespace

Stereo heardIn(const Room& room, Stereo dry) {
    const std::size_t length = dry.left.size() + samplesIn(room.seconds);
    dry.left.resize(length);
    dry.right.resize(length);
    std::vector<Path> paths;
    paths.reserve(pathCount);
    for (const std::size_t pathLength : pathLengths) paths.emplace_back(pathLength, room);
    for (std::size_t index = 0; index < length; ++index) {
        std::array<double, pathCount> echoes{};
        std::transform(paths.begin(), paths.end(), echoes.begin(), [](Path& path) { return path.out(); });
        const double left = dry.left[index];
        const double right = dry.right[index];
        dry.left[index] += room.share * (echoes[0] + echoes[2] + echoes[4] + echoes[6]);
        dry.right[index] += room.share * (echoes[1] + echoes[3] + echoes[5] + echoes[7]);
        scatter(echoes);
        for (std::size_t path = 0; path < pathCount; ++path) {
            paths[path].in(echoes[path] + (path % 2 == 0 ? left : right));
        }
    }
    return dry;
}

} // namespace quiverly::clips
