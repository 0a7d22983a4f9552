#include "tools/plot/Trace.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace quiverly {
namespace {

constexpr double sampleTime = 0.008;

Reading reading(double seconds, double magnitude = 1.0) {
    return {.seconds = seconds, .magnitude = magnitude, .baseline = 1.0, .score = magnitude - 1.0, .threshold = 0.12};
}

TEST(TraceTest, SamplesOfAShortRecordingAreKeptOneByOne) {
    Trace trace;
    for (int count = 0; count < 250; ++count) trace.add(reading(count * sampleTime, 1.0 + count));
    ASSERT_EQ(trace.bins().size(), 250U);
    for (std::size_t index = 0; index < 250; ++index) {
        EXPECT_EQ(trace.bins()[index].lowest, 1.0 + static_cast<double>(index));
        EXPECT_EQ(trace.bins()[index].last.seconds, static_cast<double>(index) * sampleTime);
    }
}

TEST(TraceTest, ReadingsOfOneMomentShareABin) {
    Trace trace;
    for (const double magnitude : {1.5, 0.5, 3.0, 1.0}) trace.add(reading(7, magnitude));
    ASSERT_EQ(trace.bins().size(), 1U);
    EXPECT_EQ(trace.bins().front().lowest, 0.5);
    EXPECT_EQ(trace.bins().front().highest, 3.0);
    EXPECT_EQ(trace.bins().front().highestScore, 2.0);
    EXPECT_EQ(trace.bins().front().last.magnitude, 1.0);
}

TEST(TraceTest, ALongRecordingLosesDetailButNoExtreme) {
    Trace trace;
    for (int count = 0; count < 1'000'000; ++count) {
        trace.add(reading(count * sampleTime, count == 123'456 ? 7.5 : count == 876'543 ? 0.25 : 1.0));
    }
    const auto& bins = trace.bins();
    EXPECT_LE(bins.size(), Trace::mostBins);
    EXPECT_GE(bins.size(), Trace::mostBins / 4);
    const auto highest = std::ranges::max_element(bins, {}, &Trace::Bin::highest);
    EXPECT_EQ(highest->highest, 7.5);
    EXPECT_EQ(highest->highestScore, 6.5);
    EXPECT_NEAR(highest->last.seconds, 123'456 * sampleTime, trace.binLength());
    const auto lowest = std::ranges::min_element(bins, {}, &Trace::Bin::lowest);
    EXPECT_EQ(lowest->lowest, 0.25);
    EXPECT_NEAR(lowest->last.seconds, 876'543 * sampleTime, trace.binLength());
    EXPECT_TRUE(std::ranges::is_sorted(bins, {}, &Trace::Bin::index));
    EXPECT_EQ(bins.back().last.seconds, 999'999 * sampleTime);
}

TEST(TraceTest, TheTimeBetweenReadingsCostsNothing) {
    Trace trace;
    for (int count = 0; count < 100; ++count) trace.add(reading(count * 4e7));
    EXPECT_EQ(trace.bins().size(), 100U);
}

} // namespace
} // namespace quiverly
