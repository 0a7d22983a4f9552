#include "tools/plot/Axis.h"

#include <gtest/gtest.h>

#include <vector>

namespace quiverly {
namespace {

TEST(AxisTest, MapsValuesToPlacesInEitherDirection) {
    const Axis right(2, 4, 100, 200);
    EXPECT_EQ(right(2), 100);
    EXPECT_EQ(right(3), 150);
    EXPECT_EQ(right(4), 200);
    const Axis up(0, 1, 200, 100);
    EXPECT_EQ(up(0.25), 175);
}

TEST(AxisTest, ValuesOutsideGoToTheEnds) {
    const Axis axis(0, 1, 10, 20);
    EXPECT_EQ(axis(-5), 10);
    EXPECT_EQ(axis(1e300), 20);
    EXPECT_TRUE(axis.contains(0) && axis.contains(1));
    EXPECT_FALSE(axis.contains(-0.1) || axis.contains(1.1));
    EXPECT_TRUE(axis.overlaps(-1, 0) && axis.overlaps(0.4, 0.6) && axis.overlaps(1, 2));
    EXPECT_FALSE(axis.overlaps(-1, -0.1) || axis.overlaps(1.1, 2));
}

TEST(AxisTest, RoundValuesAreAsCloseAsTheDistanceAllows) {
    const Axis axis(-1, 1, 0, 100);
    EXPECT_EQ(axis.roundValues(50), (std::vector<double>{-1, 0, 1}));
    EXPECT_EQ(axis.roundValues(25), (std::vector<double>{-1, -0.5, 0, 0.5, 1}));
    EXPECT_EQ(axis.roundValues(51), (std::vector<double>{0}));
}

TEST(AxisTest, RoundTimesAreThoseOfClocks) {
    EXPECT_EQ(Axis(0, 60, 0, 100).roundTimes(20), (std::vector<double>{0, 15, 30, 45, 60}));
    EXPECT_EQ(Axis(0, 250, 0, 100).roundTimes(30), (std::vector<double>{0, 120, 240}));
    EXPECT_EQ(Axis(0, 2, 0, 100).roundTimes(40), (std::vector<double>{0, 1, 2}));
}

TEST(AxisTest, NumbersHaveNoNeedlessDigits) {
    EXPECT_EQ(fixed(0.125, 1), "0.1");
    EXPECT_EQ(fixed(2, 2), "2.00");
    EXPECT_EQ(shortest(2), "2");
    EXPECT_EQ(shortest(0.25), "0.25");
    EXPECT_EQ(shortest(100), "100");
    EXPECT_EQ(shortest(1.0 / 3), "0.333");
    EXPECT_EQ(fixed(-1e308, 0).size(), 310U);
}

} // namespace
} // namespace quiverly
