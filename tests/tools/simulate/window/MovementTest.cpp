#include "tools/simulate/window/Movement.h"

#include <gtest/gtest.h>

#include <cmath>

namespace quiverly {
namespace {

// How far the laptop is from where it lies at rest, at most, from one time to another.
double farthest(const Movement& movement, double from, double to) {
    double most = 0.0;
    for (double now = from; now < to; now += 0.005) {
        const Pose pose = movement.pose(now);
        most = std::max(most, std::hypot(pose.right, pose.up));
    }
    return most;
}

TEST(MovementTest, ALaptopThatIsLeftAloneRests) {
    const Movement movement;
    EXPECT_EQ(movement.pose(5.0), Pose{});
    EXPECT_FALSE(movement.isMoving(5.0));
}

TEST(MovementTest, ASlapShakesItTheMoreTheHarderItIsAndDiesAway) {
    Movement soft, hard;
    soft.obey(command::Slap{{.peak = 0.2}}, 1.0);
    hard.obey(command::Slap{{.peak = 0.9}}, 1.0);
    EXPECT_GT(farthest(soft, 1.0, 1.6), 0.002);
    EXPECT_GT(farthest(hard, 1.0, 1.6), 1.5 * farthest(soft, 1.0, 1.6));
    EXPECT_LT(farthest(hard, 1.4, 1.6), 0.1 * farthest(hard, 1.0, 1.2));
    EXPECT_TRUE(hard.isMoving(1.59));
    EXPECT_FALSE(hard.isMoving(1.61));
    EXPECT_EQ(hard.pose(1.61), Pose{});
}

TEST(MovementTest, WhatIsDoneOnceShowsAndEnds) {
    for (const command::Command& command :
         {command::Command(command::Bump{}), command::Command(command::Lid{}), command::Command(command::Lift{})}) {
        Movement movement;
        movement.obey(command, 0.0);
        bool moved = false;
        for (double now = 0.0; movement.isMoving(now); now += 0.01) {
            ASSERT_LT(now, 5.0);
            moved = moved || movement.pose(now) != Pose{};
        }
        EXPECT_TRUE(moved);
        EXPECT_EQ(movement.pose(5.0), Pose{});
    }
}

TEST(MovementTest, TheLidShutsAndOpensAgain) {
    Movement movement;
    movement.obey(command::Lid{}, 0.0);
    EXPECT_LT(movement.pose(0.31).lid, 0.01); // when the thump is felt
    EXPECT_EQ(movement.pose(0.9).lid, 1.0);
}

TEST(MovementTest, TypingAndWalkingGoOnUntilRest) {
    Movement movement;
    movement.obey(command::Walk{}, 0.0);
    EXPECT_TRUE(movement.isWalking());
    EXPECT_TRUE(movement.isMoving(1000.0));
    movement.obey(command::Type{}, 1000.0);
    EXPECT_FALSE(movement.isWalking());
    EXPECT_TRUE(movement.isTyping());
    EXPECT_TRUE(movement.isMoving(2000.0));
    movement.obey(command::Rest{}, 2000.0);
    EXPECT_FALSE(movement.isMoving(2000.0));
}

TEST(MovementTest, ATiltStaysWithoutMoving) {
    Movement movement;
    movement.obey(command::Tilt{{.x = 0.5, .y = 0.0, .z = 0.866}}, 0.0);
    EXPECT_TRUE(movement.isMoving(0.1));
    EXPECT_FALSE(movement.isMoving(1.0));
    EXPECT_LT(movement.pose(1.0).turn, -1.0);
    EXPECT_EQ(movement.pose(1.0), movement.stillPose());
    movement.obey(command::Rest{}, 1.0);
    EXPECT_TRUE(movement.isTilted());
    movement.obey(command::Tilt{{.x = 0.0, .y = 0.0, .z = 3.0}}, 2.0);
    EXPECT_EQ(movement.pose(3.0), Pose{});
}

TEST(MovementTest, CommandsThatCannotBeSeenChangeNothing) {
    Movement movement;
    for (const command::Command& command :
         {command::Command(command::Vanish{}), command::Command(command::Deny{}), command::Command(command::Sleep{})}) {
        movement.obey(command, 0.0);
    }
    EXPECT_FALSE(movement.isMoving(0.0));
    EXPECT_EQ(movement.pose(0.0), Pose{});
}

} // namespace
} // namespace quiverly
