#pragma once

#include <cstdint>
#include <optional>
#include <random>
#include <vector>

namespace quiverly {

struct Acceleration {
    double x, y, z; // g
};

// A blow against the laptop: the acceleration jumps by `peak` along gravity, stays there for eight reports, then rings
// with that frequency and dies away to 1/e within each `decay`.
//
// One of any eight successive reports is decoded, so that the hold shows the whole peak to every detector, whichever
// report it decodes. Up to about 20 Hz no later sample scores more than the peak; faster ringing swings between two
// decoded reports by up to twice the peak, which a blow below the threshold may thus still exceed.
struct Blow {
    double peak;             // g
    double frequency = 18.0; // Hz
    double decay = 0.05;     // seconds
};

// How the laptop is moved: what an ideal sensor at rest, slapped, typed on or carried would feel, plus its noise.
//
// A pure function of the seed and the calls: next() advances time by the one millisecond between two reports, nothing
// else does.
class Motion {
public:
    // How long some of it lasts, in reports, of which there are a thousand a second.
    static constexpr int stepReports = 600;    // of walking
    static constexpr int lidFallReports = 300; // until the lid hits the deck
    static constexpr int liftReports = 800;    // until it is held, and as long to put it down
    static constexpr int holdingReports = 800;

    explicit Motion(std::uint64_t seed) : random(seed) {}

    void slap(const Blow& blow);
    void type();                       // light taps of keys until rest()
    void walk();                       // carried at walking pace until rest()
    void bump();                       // of the table: sways, below the default threshold of a slap
    void shutLid();                    // shut with a thump, which counts as a slap by default, and opened again
    void lift();                       // picked up and put down again, below the default threshold
    void rest();                       // lies still at once, the way it was turned
    void tilt(const Acceleration& up); // what the sensor feels at rest points there from now on, at 1 g; never all zero

    Acceleration next();

private:
    enum class Activity { none, typing, walking };

    struct Ringing {
        Blow blow;
        int age = 0; // reports; negative until it begins
    };

    void moveByActivity();
    double heave() const;
    double carrying();
    double ring();
    double uniform(double least, double most);

    std::mt19937_64 random;
    std::normal_distribution<double> noise{0.0, 0.0008}; // g on each axis, as small MEMS sensors have at this rate
    Acceleration gravity{.x = 0.0, .y = 0.0, .z = 1.0};
    Activity activity = Activity::none;
    std::int64_t activityAge = 0; // reports
    std::int64_t nextTap = 0;     // of the activity's age
    std::optional<int> liftAge;   // reports; nothing unless it is being lifted
    std::vector<Ringing> blows;
};

} // namespace quiverly
