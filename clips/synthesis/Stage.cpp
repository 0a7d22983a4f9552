#include "clips/synthesis/Stage.h"

#include <cmath>
#include <numbers>

namespace quiverly::clips {

Stage& Stage::play(const Signal& signal, double at, double gain, double place) {
    const double angle = (place + 1) * std::numbers::pi / 4;
    add(sound.left, signal, at, gain * std::cos(angle));
    add(sound.right, signal, at, gain * std::sin(angle));
    return *this;
}

} // namespace quiverly::clips
