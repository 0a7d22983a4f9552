#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "support/FeltMotion.h"
#include "tools/simulate/Motion.h"

namespace quiverly {
namespace {

double magnitude(const Acceleration& felt) {
    return std::hypot(felt.x, felt.y, felt.z);
}

TEST(MotionTest, TheSameSeedMovesTheSameWay) {
    Motion one(7);
    Motion same(7);
    Motion other(8);
    bool differs = false;
    for (Motion* motion : {&one, &same, &other}) {
        motion->type();
        motion->slap({.peak = 0.5});
    }
    for (int count = 0; count < 2000; ++count) {
        const Acceleration felt = one.next();
        const Acceleration again = same.next();
        EXPECT_EQ(felt.x, again.x);
        EXPECT_EQ(felt.y, again.y);
        EXPECT_EQ(felt.z, again.z);
        differs = differs || felt.x != other.next().x;
    }
    EXPECT_TRUE(differs);
}

TEST(MotionTest, ALaptopAtRestFeelsOneGWithANoiseOfAboutAThousandth) {
    Motion motion(1);
    double squares = 0.0;
    constexpr int count = 10000;
    for (int index = 0; index < count; ++index) {
        const double deviation = magnitude(motion.next()) - 1.0;
        EXPECT_LT(std::abs(deviation), 0.01);
        squares += deviation * deviation;
    }
    EXPECT_NEAR(std::sqrt(squares / count), 0.0008, 0.0001);
}

TEST(MotionTest, GravityPointsWhereTheLaptopWasTilted) {
    Motion motion(1);
    motion.tilt({.x = -3.0, .y = 0.0, .z = 4.0});
    const Acceleration felt = motion.next();
    EXPECT_NEAR(felt.x, -0.6, 0.01);
    EXPECT_NEAR(felt.y, 0.0, 0.01);
    EXPECT_NEAR(felt.z, 0.8, 0.01);
}

TEST(MotionTest, NothingIsDetectedAtRestNorWhenTheLaptopIsTurned) {
    FeltMotion felt;
    felt.settle();
    felt.feel(30000);
    felt.motion.tilt({.x = 0.0, .y = -1.0, .z = 0.2});
    felt.feel(30000);
    EXPECT_EQ(felt.samples, 61000 / 8);
    EXPECT_TRUE(felt.slaps.empty());
}

class SlapPeakTest : public testing::TestWithParam<double> {};

TEST_P(SlapPeakTest, IsTheAmplitudeThatIsDetectedWhicheverReportsAreDecoded) {
    const double peak = GetParam();
    for (int phase = 0; phase < 8; ++phase) {
        for (const Acceleration& up : {Acceleration{0, 0, 1}, Acceleration{0.3, -0.8, 0.5}}) {
            FeltMotion felt(static_cast<std::uint64_t>(phase));
            felt.motion.tilt(up);
            felt.settle();
            felt.feel(phase);
            felt.motion.slap({.peak = peak});
            felt.feel(2000);
            ASSERT_FALSE(felt.slaps.empty()) << "phase " << phase;
            if (peak < 5.0) { // a harder one displaces the detector's baseline for longer than its cooldown
                EXPECT_EQ(felt.slaps.size(), 1U) << "phase " << phase;
            }
            EXPECT_NEAR(felt.slaps[0], peak, 0.01 * peak + 0.003) << "phase " << phase;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(AnyPeak, SlapPeakTest,
                         testing::Values(0.13, 0.15, 0.2, 0.3, 0.4584, 0.6, 1.0, 2.5, 8.0, 20.0));

TEST(MotionTest, ASlapBelowTheThresholdIsNotDetectedInItsRingingEither) {
    for (int phase = 0; phase < 8; ++phase) {
        FeltMotion felt;
        felt.settle();
        felt.feel(phase);
        felt.motion.slap({.peak = 0.11});
        felt.feel(2000);
        EXPECT_TRUE(felt.slaps.empty()) << "phase " << phase;
    }
}

TEST(MotionTest, SlapsInAQuickSeriesAreDetectedOneByOne) {
    FeltMotion felt;
    felt.settle();
    for (int count = 0; count < 10; ++count) {
        felt.motion.slap({.peak = 0.3 + 0.05 * count});
        felt.feel(600);
    }
    ASSERT_EQ(felt.slaps.size(), 10U);
    for (int count = 0; count < 10; ++count) {
        EXPECT_NEAR(felt.slaps[static_cast<std::size_t>(count)], 0.3 + 0.05 * count, 0.015);
    }
}

TEST(MotionTest, ASlapRingsAtItsFrequencyAndDiesAway) {
    Motion motion(1);
    motion.slap({.peak = 1.0, .frequency = 10.0, .decay = 0.1});
    std::vector<double> felt(1000);
    for (double& sample : felt) sample = motion.next().z - 1.0;
    for (std::size_t held = 0; held < 8; ++held) EXPECT_NEAR(felt[held], 1.0, 0.01);
    EXPECT_NEAR(felt[7 + 50], -std::exp(-0.5), 0.02); // half a period later
    EXPECT_NEAR(felt[7 + 100], std::exp(-1.0), 0.02); // a whole one
    EXPECT_NEAR(felt[999], 0.0, 0.01);
}

TEST(MotionTest, TypingIsNotDetectedAtTheDefaultThresholdButAtAnEighthOfIt) {
    FeltMotion felt;
    felt.settle();
    felt.motion.type();
    felt.feel(120000);
    EXPECT_TRUE(felt.slaps.empty());
    felt.detector.threshold /= 8;
    felt.feel(10000);
    EXPECT_FALSE(felt.slaps.empty());
}

TEST(MotionTest, EveryStepOfAWalkIsDetectedAtTheDefaultThreshold) {
    FeltMotion felt;
    felt.settle();
    felt.motion.walk();
    felt.feel(60000); // a hundred steps
    EXPECT_EQ(felt.slaps.size(), 100U);
    felt.motion.rest();
    felt.feel(1000);
    felt.slaps.clear();
    felt.feel(10000);
    EXPECT_TRUE(felt.slaps.empty());
}

// Runs what is done to a laptop at rest, in every phase of the decoding, and counts the slaps at the default threshold.
template<class Deed>
void expectSlaps(std::size_t count, Deed deed) {
    for (int phase = 0; phase < 8; ++phase) {
        FeltMotion felt;
        felt.settle();
        felt.feel(phase);
        deed(felt.motion);
        felt.feel(4000);
        EXPECT_EQ(felt.slaps.size(), count) << "phase " << phase;
    }
}

TEST(MotionTest, ABumpOfTheTableIsFeltButIsNoSlapAtTheDefaultThreshold) {
    expectSlaps(0, [](Motion& motion) { motion.bump(); });
    FeltMotion felt;
    felt.settle();
    felt.detector.threshold = 0.06;
    felt.motion.bump();
    felt.feel(100);
    EXPECT_EQ(felt.slaps.size(), 1U);
}

TEST(MotionTest, TheLidHitsTheDeckAWhileAfterItFallsWhichCountsAsASlap) {
    expectSlaps(1, [](Motion& motion) { motion.shutLid(); });
    FeltMotion felt;
    felt.settle();
    felt.motion.shutLid();
    felt.feel(290);
    EXPECT_TRUE(felt.slaps.empty());
    felt.feel(20);
    EXPECT_EQ(felt.slaps.size(), 1U);
}

TEST(MotionTest, PickingTheLaptopUpIsFeltButIsNoSlapAtTheDefaultThreshold) {
    expectSlaps(0, [](Motion& motion) { motion.lift(); });
    Motion motion(1);
    motion.lift();
    std::vector<double> felt(2500);
    for (double& sample : felt) sample = motion.next().z - 1.0;
    EXPECT_NEAR(felt[200], 0.08, 0.01);  // speeds up
    EXPECT_NEAR(felt[600], -0.08, 0.01); // slows down
    EXPECT_NEAR(felt[1200], 0.0, 0.01);  // is held
    EXPECT_NEAR(felt[1800], -0.08, 0.01);
    EXPECT_NEAR(felt[2200], 0.08, 0.01);
    EXPECT_NEAR(felt[2450], 0.0, 0.01); // lies again
}

TEST(MotionTest, RestEndsALift) {
    Motion motion(1);
    motion.lift();
    for (int count = 0; count < 200; ++count) motion.next();
    motion.rest();
    EXPECT_NEAR(motion.next().z, 1.0, 0.01);
}

} // namespace
} // namespace quiverly
