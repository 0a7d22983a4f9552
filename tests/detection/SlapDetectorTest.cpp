#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <limits>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

#include "detection/SlapDetector.h"
#include "platform/virtual/VirtualPlatform.h"

namespace quiverly {
namespace {

using namespace std::chrono_literals;

static_assert(!std::is_polymorphic_v<SlapDetector>);

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

class SlapDetectorTest : public testing::Test {
protected:
    SlapDetectorTest() { listen(); }

    void listen() {
        detector.onSlap = [this](double amplitude) { amplitudes.push_back(amplitude); };
    }

    // One sample of that magnitude.
    void feel(double magnitude) { detector.process(0, magnitude, 0); }

    void rest(int samples) {
        for (int count = 0; count < samples; ++count) feel(1.0);
    }

    // Lets the event of the very first sample pass and its cooldown too. The baseline is 1 g then, and so is the
    // previous magnitude.
    void settle() {
        feel(1.0);
        amplitudes.clear();
        platform.calendar.advance(10s);
    }

    // One more sample of that magnitude, and its score whatever threshold and cooldown are.
    double score(double magnitude) {
        const double threshold = std::exchange(detector.threshold, 0.0);
        const double cooldown = std::exchange(detector.cooldown, 0.0);
        amplitudes.clear();
        feel(magnitude);
        detector.threshold = threshold;
        detector.cooldown = cooldown;
        EXPECT_EQ(amplitudes.size(), 1U);
        return amplitudes.empty() ? nan : amplitudes.front();
    }

    static constexpr double rounding = 1e-12;

    VirtualPlatform platform;
    SlapDetector detector;
    std::vector<double> amplitudes;
};

using Amplitudes = std::vector<double>;

TEST_F(SlapDetectorTest, BeginsWithTheDefaults) {
    EXPECT_EQ(detector.threshold, 0.12);
    EXPECT_EQ(detector.cooldown, 0.55);
    EXPECT_FALSE(SlapDetector().onSlap);
}

TEST_F(SlapDetectorTest, BeginsWithABaselineOfOneGAndAPreviousMagnitudeOfZero) {
    EXPECT_NEAR(score(0.4), 0.597, rounding); // from the baseline, 0.995 + 0.002
    SlapDetector other;
    other.onSlap = detector.onSlap;
    platform.calendar.advance(10s);
    other.process(0, 0, 1.25);
    EXPECT_EQ(amplitudes.back(), 1.25); // from the previous magnitude
}

TEST_F(SlapDetectorTest, TheFirstSampleAtRestFiresWithAnAmplitudeOfAboutOne) {
    rest(1);
    EXPECT_EQ(amplitudes, Amplitudes{1.0});
}

TEST_F(SlapDetectorTest, TheFirstSampleFiresWhateverTheCalendarSays) {
    platform.calendar.now = calendar::TimePoint{0s};
    rest(1);
    EXPECT_EQ(amplitudes.size(), 1U);

    platform.calendar.now = calendar::TimePoint{9'000'000'000s};
    SlapDetector late;
    late.onSlap = detector.onSlap;
    late.process(1, 0, 0);
    EXPECT_EQ(amplitudes.size(), 2U);
}

TEST_F(SlapDetectorTest, ASteadyStreamOfOneGAfterTheFirstSampleMakesNoEvent) {
    rest(1);
    for (int sample = 0; sample < 1000; ++sample) {
        platform.calendar.advance(8ms);
        rest(1);
    }
    EXPECT_EQ(amplitudes.size(), 1U);
    EXPECT_EQ(score(1.0), 0.0);
}

TEST_F(SlapDetectorTest, ASpikeToOneAndAHalfFiresWithOneHalfAndItsReturnFallsInsideTheCooldown) {
    settle();
    feel(1.5);
    EXPECT_EQ(amplitudes, Amplitudes{0.5});

    platform.calendar.advance(8ms);
    feel(1.0);
    EXPECT_EQ(amplitudes.size(), 1U);
    EXPECT_NEAR(score(1.0), 0.0024750625, rounding); // the baseline: 1.0025, 1.0024875, 1.0024750625
}

TEST_F(SlapDetectorTest, ASampleBelowTheThresholdMovesBaselineAndPreviousMagnitude) {
    settle();
    feel(1.1);
    EXPECT_TRUE(amplitudes.empty());
    EXPECT_NEAR(score(1.1), 0.0990025, rounding); // the baseline: 1.0005, 1.0009975
}

TEST_F(SlapDetectorTest, TheMagnitudeIsThatOfAllThreeAxes) {
    detector.process(2, -3, 6);
    EXPECT_EQ(amplitudes, Amplitudes{7.0});
}

TEST_F(SlapDetectorTest, TheDistanceFromTheBaselineJustUpdatedCountsWhenItIsTheLarger) {
    settle();
    detector.threshold = 1.0;
    feel(1.5);
    EXPECT_TRUE(amplitudes.empty());
    detector.threshold = 0.12;
    feel(1.5);
    ASSERT_EQ(amplitudes.size(), 1U);
    EXPECT_NEAR(amplitudes[0], 0.4950125, rounding); // the baseline: 1.0025, 1.0049875
}

TEST_F(SlapDetectorTest, AScoreEqualToTheThresholdFiresAndTheNextBelowDoesNot) {
    settle();
    detector.threshold = std::nextafter(0.5, 1.0);
    feel(1.5);
    feel(1.0); // scores 0.5 too
    EXPECT_TRUE(amplitudes.empty());
    detector.threshold = 0.5;
    feel(1.5);
    EXPECT_EQ(amplitudes, Amplitudes{0.5});
}

TEST_F(SlapDetectorTest, TheThresholdThatStandsAtTheCallCounts) {
    settle();
    detector.threshold = 2.0;
    feel(1.5);
    EXPECT_TRUE(amplitudes.empty());
    detector.threshold = 0.0;
    feel(1.5);
    EXPECT_EQ(amplitudes.size(), 1U);
}

TEST_F(SlapDetectorTest, ASecondHitInsideTheCooldownIsNotASlapAndOneAtItsEndIs) {
    settle();
    feel(1.5);
    platform.calendar.advance(549ms);
    feel(1.0);
    EXPECT_EQ(amplitudes.size(), 1U);

    platform.calendar.advance(1ms); // 0.55 s after the slap, not after the hit in between
    feel(1.5);
    EXPECT_EQ(amplitudes.size(), 2U);
}

TEST_F(SlapDetectorTest, TheLastNanosecondBelongsToTheCooldown) {
    settle();
    feel(1.5);
    platform.calendar.advance(549'999'999ns);
    feel(1.0);
    EXPECT_EQ(amplitudes.size(), 1U);
    platform.calendar.advance(1ns);
    feel(1.5);
    EXPECT_EQ(amplitudes.size(), 2U);
}

TEST_F(SlapDetectorTest, TheCooldownCanBeChanged) {
    settle();
    detector.cooldown = 0.0;
    feel(1.5);
    feel(1.0);
    EXPECT_EQ(amplitudes.size(), 2U);
}

TEST_F(SlapDetectorTest, WithoutAReceiverAQualifyingSampleStillStartsTheCooldown) {
    settle();
    detector.onSlap = nullptr;
    feel(1.5);

    listen();
    platform.calendar.advance(549ms);
    feel(1.0);
    EXPECT_TRUE(amplitudes.empty());
    platform.calendar.advance(1ms);
    feel(1.5);
    EXPECT_EQ(amplitudes.size(), 1U);
}

TEST_F(SlapDetectorTest, TheReceiverIsCalledInsideProcessWithTheEventAlreadyRecorded) {
    settle();
    int calls = 0;
    detector.onSlap = [&](double) {
        ++calls;
        if (calls == 1) feel(3.0); // falls inside the cooldown
    };
    feel(1.5);
    EXPECT_EQ(calls, 1);
}

TEST_F(SlapDetectorTest, TheReceiverMayReplaceItselfInsideItsOwnCall) {
    settle();
    auto held = std::make_shared<int>(1);
    const std::weak_ptr<int> receiverLives = held;
    detector.onSlap = [this, &receiverLives, held = std::move(held)](double) {
        const auto& lives = receiverLives; // what is read after the replacement must not stand in the receiver
        listen();
        EXPECT_FALSE(lives.expired());
    };
    feel(1.5);
    EXPECT_TRUE(amplitudes.empty());
    EXPECT_TRUE(receiverLives.expired());

    platform.calendar.advance(10s);
    feel(1.0);
    EXPECT_EQ(amplitudes.size(), 1U);
}

TEST_F(SlapDetectorTest, TheBaselineClosesAboutFortySevenPercentOfAStepInOneSecond) {
    settle();
    for (int sample = 0; sample < 124; ++sample) feel(2.0);
    EXPECT_NEAR(score(2.0), 0.5344, 0.00005); // what is left of the step after 125 samples
}

TEST_F(SlapDetectorTest, ASlowDriftIsAbsorbed) {
    settle();
    for (int sample = 1; sample <= 10'000; ++sample) {
        platform.calendar.advance(8ms);
        feel(1.0 + sample * 0.0005);
    }
    EXPECT_TRUE(amplitudes.empty());
}

TEST_F(SlapDetectorTest, AfterANotANumberNoEventCanFireAgain) {
    settle();
    detector.process(0, nan, 0);
    detector.threshold = 0.0;
    for (const double magnitude : {1.0, 5.0, 0.0, infinity, 1.0}) {
        platform.calendar.advance(10s);
        feel(magnitude);
    }
    EXPECT_TRUE(amplitudes.empty());
}

TEST_F(SlapDetectorTest, AScoreThatIsNotANumberPassesNoThresholdHoweverLow) {
    settle();
    detector.threshold = -infinity;
    detector.process(nan, 0, 0);
    EXPECT_TRUE(amplitudes.empty());
}

TEST_F(SlapDetectorTest, AClockSetBackSuppressesEventsUntilItHasCaughtUp) {
    settle();
    feel(1.5);
    const auto fired = platform.calendar.now;

    platform.calendar.now = fired - 1h;
    feel(1.0);
    platform.calendar.now = fired + 549ms;
    feel(1.5);
    EXPECT_EQ(amplitudes.size(), 1U);
    platform.calendar.now = fired + 550ms;
    feel(1.0);
    EXPECT_EQ(amplitudes.size(), 2U);
}

TEST_F(SlapDetectorTest, TellsWhatItsSamplesHaveComeTo) {
    EXPECT_EQ(detector.magnitude(), 0.0);
    EXPECT_EQ(detector.runningBaseline(), 1.0);
    EXPECT_FALSE(detector.isCoolingDown(platform.calendar.now));
    settle();
    detector.process(0, 0, -1.5);
    EXPECT_EQ(detector.magnitude(), 1.5);
    EXPECT_NEAR(detector.runningBaseline(), 1.0025, rounding);
    EXPECT_EQ(amplitudes, Amplitudes{SlapDetector::score(1.5, detector.runningBaseline(), 1.0)});

    const auto fired = platform.calendar.now;
    EXPECT_TRUE(detector.isCoolingDown(fired));
    EXPECT_TRUE(detector.isCoolingDown(fired + 550ms - 1ns));
    EXPECT_FALSE(detector.isCoolingDown(fired + 550ms));
}

} // namespace
} // namespace quiverly
