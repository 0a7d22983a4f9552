#include "tools/simulate/Motion.h"

#include <cmath>
#include <numbers>

namespace quiverly {

namespace {

constexpr double reportInterval = 0.001; // seconds
constexpr int holdReports = 8;           // as many as one is decoded of
constexpr double inaudible = 0.0001;     // g; a blow that rings less is over
constexpr double turn = 2.0 * std::numbers::pi;

// Carrying a laptop: the body rises and falls with each step, and each heel sends a jolt.
constexpr double bodyHeave = 0.08; // g
constexpr Blow heelStrike{.peak = 0.25, .frequency = 12.0, .decay = 0.05};

// The table sways more slowly than a slapped laptop rings.
constexpr Blow tableBump{.peak = 0.09, .frequency = 7.0, .decay = 0.2};

// The lid falls for a moment before it hits the deck.
constexpr Blow lidThump{.peak = 0.25, .frequency = 25.0, .decay = 0.03};

// Picked up it speeds up and slows down, is held, and comes down the same way.
constexpr double liftPush = 0.08; // g

double timeSinceHold(int age) {
    return (age - holdReports + 1) * reportInterval;
}

double envelope(const Blow& blow, int age) {
    if (age < 0) return blow.peak; // it is yet to come
    return age < holdReports ? blow.peak : blow.peak * std::exp(-timeSinceHold(age) / blow.decay);
}

double displacement(const Blow& blow, int age) {
    if (age < 0) return 0.0;
    return age < holdReports ? blow.peak : envelope(blow, age) * std::cos(turn * blow.frequency * timeSinceHold(age));
}

} // namespace

void Motion::slap(const Blow& blow) {
    blows.push_back({.blow = blow});
}

void Motion::type() {
    activity = Activity::typing;
    activityAge = nextTap = 0;
}

void Motion::walk() {
    activity = Activity::walking;
    activityAge = 0;
}

void Motion::bump() {
    slap(tableBump);
}

void Motion::shutLid() {
    blows.push_back({.blow = lidThump, .age = -lidFallReports});
}

void Motion::lift() {
    liftAge = 0;
}

void Motion::rest() {
    activity = Activity::none;
    liftAge.reset();
    blows.clear();
}

void Motion::tilt(const Acceleration& up) {
    const double length = std::hypot(up.x, up.y, up.z);
    gravity = {.x = up.x / length, .y = up.y / length, .z = up.z / length};
}

Acceleration Motion::next() {
    moveByActivity();
    const double along = 1.0 + heave() + carrying() + ring();
    ++activityAge;
    return {.x = gravity.x * along + noise(random),
            .y = gravity.y * along + noise(random),
            .z = gravity.z * along + noise(random)};
}

void Motion::moveByActivity() {
    if (activity == Activity::typing && activityAge == nextTap) {
        slap({.peak = uniform(0.01, 0.04), .frequency = 60.0, .decay = 0.01});
        nextTap += static_cast<int>(uniform(80.0, 250.0));
    }
    if (activity == Activity::walking && activityAge % stepReports == 0) slap(heelStrike);
}

double Motion::heave() const {
    if (activity != Activity::walking) return 0.0;
    const auto ofTheStep = static_cast<double>(activityAge % stepReports) / stepReports;
    return bodyHeave * std::sin(turn * ofTheStep);
}

double Motion::carrying() {
    if (!liftAge) return 0.0;
    const int age = (*liftAge)++;
    const int down = age - liftReports - holdingReports;
    if (down >= liftReports) liftAge.reset();
    const auto push = [](int since) {
        return since < 0 || since >= liftReports ? 0.0 : liftPush * std::sin(turn * since / liftReports);
    };
    return push(age) - push(down);
}

double Motion::ring() {
    double sum = 0.0;
    for (auto& [blow, age] : blows) sum += displacement(blow, age++);
    std::erase_if(blows, [](const Ringing& ringing) { return envelope(ringing.blow, ringing.age) < inaudible; });
    return sum;
}

double Motion::uniform(double least, double most) {
    return std::uniform_real_distribution<double>(least, most)(random);
}

} // namespace quiverly
