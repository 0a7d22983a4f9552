#pragma once

#include <optional>
#include <vector>

#include "tools/simulate/Command.h"

namespace quiverly {

// How the drawn laptop lies at a moment. All zero, with the lid open, is at rest.
struct Pose {
    double right = 0.0; // of the laptop's width
    double up = 0.0;    // likewise
    double turn = 0.0;  // degrees, clockwise
    double lid = 1.0;   // 1 open, 0 shut

    bool operator==(const Pose&) const = default;
};

// How the drawn laptop moves after what is done to it. Times are in seconds and never decrease.
class Movement {
public:
    // Shows what a command does to the laptop, as far as it can be seen.
    void obey(const command::Command& command, double now);

    Pose pose(double now) const;
    Pose stillPose() const;          // what is left of it when nothing moves
    bool isMoving(double now) const; // and not only turned

    // What goes on until `rest`.
    bool isTyping() const { return typing; }
    bool isWalking() const { return walkBegan.has_value(); }

    bool isTilted() const { return tilted; }

private:
    void begin(const command::Slap& slap, double now);
    void begin(const command::Rest&, double now);
    void begin(const command::Tilt& tilt, double now);
    void begin(const command::Type&, double now);
    void begin(const command::Walk&, double now);
    void begin(const command::Bump&, double now) { bumpBegan = now; }
    void begin(const command::Lid&, double now) { lidBegan = now; }
    void begin(const command::Lift&, double now) { liftBegan = now; }
    template<class Unseen>
    void begin(const Unseen&, double) {}

    struct Shake {
        double began;
        double peak; // g
    };

    std::vector<Shake> shakes;
    std::optional<double> walkBegan, bumpBegan, lidBegan, liftBegan, tiltBegan;
    bool typing = false;
    bool tilted = false;
};

} // namespace quiverly
