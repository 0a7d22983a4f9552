#include "clips/instruments/Glottis.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace quiverly::clips {
namespace {

constexpr int steps = 20000; // of a cycle

double slope(const Glottis& glottis, double from, double to) {
    return std::abs(glottis.flowDerivative(to) - glottis.flowDerivative(from));
}

class GlottisTest : public testing::TestWithParam<double> {};

TEST_P(GlottisTest, WhatFlowsInACycleFlowsOutAgain) {
    const Glottis glottis(GetParam());
    double sum = 0;
    for (int step = 0; step < steps; ++step) sum += glottis.flowDerivative((step + 0.5) / steps) / steps;
    EXPECT_NEAR(sum, 0, 1e-4);
}

TEST_P(GlottisTest, BeginsAndEndsAt0AndIsLeastWhereTheFoldsClose) {
    const Glottis glottis(GetParam());
    EXPECT_NEAR(glottis.flowDerivative(0), 0, 1e-9);
    EXPECT_NEAR(glottis.flowDerivative(1), 0, 1e-9);
    double least = 0;
    for (int step = 0; step < steps; ++step) {
        least = std::min(least, glottis.flowDerivative(static_cast<double>(step) / steps));
    }
    EXPECT_NEAR(least, -1, 0.02);
}

TEST_P(GlottisTest, OpennessStaysBetween0And1AndEndsClosed) {
    const Glottis glottis(GetParam());
    double widest = 0;
    for (int step = 0; step < steps; ++step) {
        const double openness = glottis.openness(static_cast<double>(step) / steps);
        ASSERT_GE(openness, 0);
        ASSERT_LE(openness, 1);
        widest = std::max(widest, openness);
    }
    EXPECT_GT(widest, 0.9);
    EXPECT_EQ(glottis.openness(0), 0);
}

INSTANTIATE_TEST_SUITE_P(FromPressedToBreathy, GlottisTest, testing::Values(0.3, 0.7, 1.0, 1.6, 2.7));

TEST(GlottisOrderTest, APressedVoiceClosesFasterThanABreathyOne) {
    const auto steepest = [](double rd) {
        const Glottis glottis(rd);
        double most = 0;
        for (int step = 1; step < 1000; ++step)
            most = std::max(most, slope(glottis, (step - 1) / 1000.0, step / 1000.0));
        return most;
    };
    EXPECT_GT(steepest(0.4), 2 * steepest(1.0));
    EXPECT_GT(steepest(1.0), 2 * steepest(2.5));
}

TEST(GlottisOrderTest, ValuesOutsideTheModelCountAsItsLimits) {
    EXPECT_EQ(&glottisFor(0), &glottisFor(0.3));
    EXPECT_EQ(&glottisFor(9), &glottisFor(2.7));
    EXPECT_NE(&glottisFor(1), &glottisFor(1.5));
}

} // namespace
} // namespace quiverly::clips
