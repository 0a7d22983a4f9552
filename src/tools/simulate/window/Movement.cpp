#include "tools/simulate/window/Movement.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <variant>

#include "tools/simulate/Motion.h"

namespace quiverly {

namespace {

constexpr double circle = 2.0 * std::numbers::pi;

constexpr double riseShare = 0.35; // of what goes there, stays there and comes back

// Seconds that each takes.
constexpr double shakeTime = 0.6;
constexpr double bumpTime = 1.0;
constexpr double lidTime = Motion::lidFallReports / 1000.0 / riseShare;
constexpr double liftTime = (2 * Motion::liftReports + Motion::holdingReports) / 1000.0;
constexpr double tiltTime = 0.3;
constexpr double stepTime = Motion::stepReports / 1000.0; // of a walk

constexpr double tiltTurn = -5.0; // degrees

bool lasts(const std::optional<double>& began, double time, double now) {
    return began && now - *began < time;
}

double smooth(double share) {
    const double inside = std::clamp(share, 0.0, 1.0);
    return inside * inside * (3.0 - 2.0 * inside);
}

// Rises from 0 to 1, stays there, and falls again.
double thereAndBack(double share) {
    return smooth(share / riseShare) - smooth((share - 1.0 + riseShare) / riseShare);
}

} // namespace

void Movement::obey(const command::Command& command, double now) {
    std::visit([&](const auto& what) { begin(what, now); }, command);
}

void Movement::begin(const command::Slap& slap, double now) {
    std::erase_if(shakes, [now](const Shake& shake) { return now - shake.began >= shakeTime; });
    shakes.push_back({.began = now, .peak = slap.blow.peak});
}

void Movement::begin(const command::Rest&, double) {
    typing = false;
    shakes.clear();
    for (auto* began : {&walkBegan, &bumpBegan, &lidBegan, &liftBegan}) began->reset();
}

void Movement::begin(const command::Tilt& tilt, double now) {
    const bool next = tilt.up.x != 0.0 || tilt.up.y != 0.0 || tilt.up.z < 0.0;
    if (next == tilted) return;
    tilted = next;
    tiltBegan = now;
}

void Movement::begin(const command::Type&, double) {
    typing = true;
    walkBegan.reset();
}

void Movement::begin(const command::Walk&, double now) {
    typing = false;
    walkBegan = now;
}

Pose Movement::stillPose() const {
    return {.turn = tilted ? tiltTurn : 0.0};
}

Pose Movement::pose(double now) const {
    Pose pose;
    for (const auto& [began, peak] : shakes) {
        const double age = now - began;
        if (age >= shakeTime) continue;
        const double swing = 0.022 * std::min(1.0, std::sqrt(peak)) * std::exp(-age / 0.13) * (1.0 - age / shakeTime);
        pose.right += swing * std::sin(circle * 11.0 * age);
        pose.up -= 0.6 * swing * std::cos(circle * 9.0 * age);
        pose.turn += 40.0 * swing * std::sin(circle * 7.0 * age);
    }
    if (walkBegan) {
        const double steps = (now - *walkBegan) / stepTime;
        pose.up += 0.014 * std::sin(circle * steps);
        pose.right += 0.008 * std::sin(circle * steps / 2.0);
    }
    if (lasts(bumpBegan, bumpTime, now)) {
        const double age = now - *bumpBegan;
        pose.right += 0.012 * std::exp(-age / 0.25) * (1.0 - age / bumpTime) * std::sin(circle * 5.0 * age);
    }
    if (lasts(lidBegan, lidTime, now)) pose.lid = 1.0 - thereAndBack((now - *lidBegan) / lidTime);
    if (lasts(liftBegan, liftTime, now)) pose.up += 0.04 * thereAndBack((now - *liftBegan) / liftTime);
    const double tilting = tiltBegan ? smooth((now - *tiltBegan) / tiltTime) : 1.0;
    pose.turn += tiltTurn * (tilted ? tilting : 1.0 - tilting);
    return pose;
}

bool Movement::isMoving(double now) const {
    const auto shakesNow = [now](const Shake& shake) { return now - shake.began < shakeTime; };
    return typing || walkBegan || std::ranges::any_of(shakes, shakesNow) || lasts(bumpBegan, bumpTime, now) ||
           lasts(lidBegan, lidTime, now) || lasts(liftBegan, liftTime, now) || lasts(tiltBegan, tiltTime, now);
}

} // namespace quiverly
