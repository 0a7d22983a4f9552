#include <gtest/gtest.h>

#include <bit>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <random>
#include <type_traits>
#include <vector>

#include "engine/Inspector.h"
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

    // Lets the event of the very first sample pass and its cooldown too.
    void settle() {
        feel(1.0);
        amplitudes.clear();
        platform.calendar.advance(10s);
    }

    double& baseline() { return Inspector::baseline(detector); }
    double& prevMag() { return Inspector::prevMag(detector); }

    VirtualPlatform platform;
    SlapDetector detector;
    std::vector<double> amplitudes;
};

using Amplitudes = std::vector<double>;

TEST_F(SlapDetectorTest, BeginsWithTheDefaults) {
    EXPECT_EQ(detector.threshold, 0.12);
    EXPECT_EQ(detector.cooldown, 0.55);
    EXPECT_EQ(baseline(), 1.0);
    EXPECT_EQ(prevMag(), 0.0);
    EXPECT_EQ(Inspector::lastFire(detector), calendar::distantPast);
    EXPECT_FALSE(SlapDetector().onSlap);
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
    EXPECT_EQ(baseline(), 1.0);
}

TEST_F(SlapDetectorTest, ASpikeToOneAndAHalfFiresWithOneHalfAndItsReturnFallsInsideTheCooldown) {
    settle();
    feel(1.5);
    EXPECT_EQ(amplitudes, Amplitudes{0.5});
    EXPECT_EQ(baseline(), 1.0 * 0.995 + 1.5 * 0.005);
    EXPECT_EQ(prevMag(), 1.5);

    platform.calendar.advance(8ms);
    const double risen = baseline();
    feel(1.0);
    EXPECT_EQ(amplitudes.size(), 1U);
    EXPECT_EQ(baseline(), risen * 0.995 + 1.0 * 0.005);
    EXPECT_EQ(prevMag(), 1.0);
}

TEST_F(SlapDetectorTest, ASampleBelowTheThresholdMovesBaselineAndPreviousMagnitude) {
    settle();
    feel(1.1);
    EXPECT_TRUE(amplitudes.empty());
    EXPECT_EQ(baseline(), 1.0 * 0.995 + 1.1 * 0.005);
    EXPECT_EQ(prevMag(), 1.1);
}

TEST_F(SlapDetectorTest, TheMagnitudeIsThatOfAllThreeAxes) {
    detector.process(2, -3, 6);
    EXPECT_EQ(prevMag(), 7.0);
}

TEST_F(SlapDetectorTest, TheDistanceFromTheBaselineJustUpdatedCountsWhenItIsTheLarger) {
    settle();
    prevMag() = 1.5;
    feel(1.5);
    EXPECT_EQ(amplitudes, Amplitudes{1.5 - (1.0 * 0.995 + 1.5 * 0.005)}); // 0.4975
}

TEST_F(SlapDetectorTest, AScoreEqualToTheThresholdFiresAndTheNextBelowDoesNot) {
    settle();
    detector.threshold = std::nextafter(0.5, 1.0);
    feel(1.5);
    EXPECT_TRUE(amplitudes.empty());

    prevMag() = 1.0;
    baseline() = 1.0;
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
    EXPECT_EQ(Inspector::lastFire(detector), platform.calendar.now);

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
    bool called = false;
    detector.onSlap = [&](double) {
        called = true;
        EXPECT_EQ(Inspector::lastFire(detector), platform.calendar.now);
        EXPECT_EQ(prevMag(), 1.5);
    };
    feel(1.5);
    EXPECT_TRUE(called);
}

TEST_F(SlapDetectorTest, TheBaselineClosesAboutFortySevenPercentOfAStepInOneSecond) {
    settle();
    for (int sample = 0; sample < 125; ++sample) feel(2.0);
    EXPECT_NEAR(baseline() - 1.0, 1 - std::pow(0.995, 125), 1e-12);
    EXPECT_NEAR(baseline() - 1.0, 0.47, 0.005);
}

TEST_F(SlapDetectorTest, ASlowDriftIsAbsorbed) {
    settle();
    for (int sample = 1; sample <= 10'000; ++sample) {
        platform.calendar.advance(8ms);
        feel(1.0 + sample * 0.0005);
    }
    EXPECT_TRUE(amplitudes.empty());
    EXPECT_EQ(prevMag(), 6.0);
}

TEST_F(SlapDetectorTest, AfterANotANumberNoEventCanFireAgain) {
    settle();
    detector.process(0, nan, 0);
    EXPECT_TRUE(std::isnan(baseline()));
    EXPECT_TRUE(std::isnan(prevMag()));
    for (const double magnitude : {1.0, 5.0, 0.0, infinity, 1.0}) {
        platform.calendar.advance(10s);
        feel(magnitude);
        EXPECT_TRUE(std::isnan(baseline()));
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

// The detector once more, on its own clock, in whole nanoseconds where the detector divides.
struct DetectorModel {
    double previous = 0.0;
    double average = 1.0;
    std::optional<std::int64_t> firedAt; // nanoseconds

    std::optional<double> process(double x, double y, double z, std::int64_t now, double threshold,
                                  std::int64_t cooldown) {
        const double xx = x * x;
        const double yy = y * y;
        const double zz = z * z;
        const double sum = xx + yy;
        const double magnitude = std::sqrt(sum + zz);
        const double kept = average * 0.995;
        const double added = magnitude * 0.005;
        average = kept + added;
        const double drift = std::fabs(magnitude - average);
        const double jump = std::fabs(magnitude - previous);
        previous = magnitude;
        if (std::isnan(drift) || std::isnan(jump)) return std::nullopt;
        const double score = drift > jump ? drift : jump;
        if (!(score >= threshold)) return std::nullopt;
        if (firedAt && now - *firedAt < cooldown) return std::nullopt;
        firedAt = now;
        return score;
    }
};

TEST_F(SlapDetectorTest, RandomSamplesScoreAlikeInASecondModelToTheBit) {
    int events = 0;
    for (std::uint64_t seed = 0; seed < 40; ++seed) {
        std::mt19937_64 generator(seed);
        std::normal_distribution<double> noise(0.0, 0.02);
        std::uniform_real_distribution<double> hit(-3.0, 3.0);
        SlapDetector subject;
        Amplitudes fired;
        subject.onSlap = [&](double amplitude) { fired.push_back(amplitude); };
        DetectorModel model;
        std::int64_t cooldown = 550'000'000;

        for (int sample = 0; sample < 5'000; ++sample) {
            platform.calendar.advance(std::chrono::nanoseconds(generator() % 16'000'000));
            if (generator() % 500 == 0) platform.calendar.advance(-1s);
            if (generator() % 300 == 0) subject.threshold = std::abs(noise(generator)) * 10;
            if (generator() % 400 == 0) {
                cooldown = static_cast<std::int64_t>(generator() % 4) * 275'000'000;
                subject.cooldown = static_cast<double>(cooldown) / 1e9;
            }
            const double push = generator() % 50 == 0 ? hit(generator) : 0.0;
            const double x = noise(generator) + push;
            const double y = noise(generator) - push / 2;
            const double z = seed % 4 == 3 && sample == 4'000 ? nan : 1.0 + noise(generator);

            fired.clear();
            subject.process(x, y, z);
            const auto expected =
                model.process(x, y, z, platform.calendar.now.time_since_epoch().count(), subject.threshold, cooldown);
            ASSERT_EQ(fired.size(), expected ? 1U : 0U) << "seed " << seed << ", sample " << sample;
            if (expected) {
                ASSERT_EQ(std::bit_cast<std::uint64_t>(fired[0]), std::bit_cast<std::uint64_t>(*expected));
                ++events;
            }
            ASSERT_EQ(std::bit_cast<std::uint64_t>(Inspector::baseline(subject)),
                      std::bit_cast<std::uint64_t>(model.average));
            ASSERT_EQ(std::bit_cast<std::uint64_t>(Inspector::prevMag(subject)),
                      std::bit_cast<std::uint64_t>(model.previous));
        }
    }
    EXPECT_GT(events, 1'000);
}

} // namespace
} // namespace quiverly
