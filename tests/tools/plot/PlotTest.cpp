#include "tools/plot/Plot.h"

#include <gtest/gtest.h>

namespace quiverly {
namespace {

TEST(SpansTest, ASpanReachesToTheFirstMomentAtWhichItNoLongerHolds) {
    Spans spans;
    for (const auto& [seconds, holds] : {std::pair{0.0, false}, {1.0, true}, {2.0, true}, {3.0, false}, {4.0, false}}) {
        spans.observe(seconds, holds);
    }
    ASSERT_EQ(spans.all().size(), 1U);
    EXPECT_EQ(spans.all().front().from, 1.0);
    EXPECT_EQ(spans.all().front().to, 3.0);
}

TEST(SpansTest, WhatStillHoldsAtTheEndReachesToTheEnd) {
    Spans spans;
    spans.observe(1.0, true);
    spans.observe(2.0, false);
    spans.observe(3.0, true);
    spans.observe(4.0, true);
    ASSERT_EQ(spans.all().size(), 2U);
    EXPECT_EQ(spans.all().back().from, 3.0);
    EXPECT_EQ(spans.all().back().to, 4.0);
}

} // namespace
} // namespace quiverly
