#include "platform/virtual/VirtualMainQueue.h"

#include <gtest/gtest.h>

#include <chrono>
#include <vector>

#include "platform/virtual/VirtualPlatform.h"

namespace quiverly {
namespace {

using Marks = std::vector<int>;

class VirtualMainQueueTest : public testing::Test {
protected:
    void postMark(int mark) {
        mainQueue::post([this, mark] { marks.push_back(mark); });
    }
    void postMarkAfter(double seconds, int mark) {
        mainQueue::postAfter(seconds, [this, mark] { marks.push_back(mark); });
    }

    VirtualPlatform platform;
    VirtualMainQueue& queue = platform.mainQueue;
    Marks marks;
};

TEST_F(VirtualMainQueueTest, NothingRunsBeforeItIsDrained) {
    postMark(1);
    EXPECT_EQ(marks, Marks{});
    queue.drain();
    EXPECT_EQ(marks, Marks{1});
}

TEST_F(VirtualMainQueueTest, DrainingRunsWhatJobsPostToo) {
    mainQueue::post([this] {
        mainQueue::post([this] { postMark(1); });
        postMark(2);
    });
    queue.drain();
    EXPECT_EQ(marks, (Marks{2, 1}));
}

TEST_F(VirtualMainQueueTest, AJobThatDrainsOrAdvancesTheQueueRunsNoOtherJob) {
    postMarkAfter(1, 4);
    mainQueue::post([this] {
        postMark(3);
        EXPECT_FALSE(queue.runTurn());
        queue.drain();
        queue.advance(1);
        marks.push_back(1);
    });
    postMark(2);
    queue.drain();
    EXPECT_EQ(marks, (Marks{1, 2, 3, 4}));
}

TEST_F(VirtualMainQueueTest, ADelayedJobRunsAtItsTimeAndNotBefore) {
    postMarkAfter(1.5, 1);
    queue.drain();
    queue.advance(1.499);
    EXPECT_EQ(marks, Marks{});
    queue.advance(0.001);
    EXPECT_EQ(marks, Marks{1});
}

TEST_F(VirtualMainQueueTest, DelayedJobsRunByTimeAndThoseOfOneMomentInTheOrderPosted) {
    postMarkAfter(2, 3);
    postMarkAfter(1, 1);
    postMarkAfter(2, 4);
    postMarkAfter(1, 2);
    postMark(0);
    queue.advance(5);
    EXPECT_EQ(marks, (Marks{0, 1, 2, 3, 4}));
}

TEST_F(VirtualMainQueueTest, WhatADelayedJobPostsRunsBeforeTheNextDelayedJob) {
    mainQueue::postAfter(1, [this] {
        postMark(1);
        postMarkAfter(1, 3); // due at 2, after the one that was posted first
    });
    postMarkAfter(2, 2);
    queue.advance(2);
    EXPECT_EQ(marks, (Marks{1, 2, 3}));
}

TEST_F(VirtualMainQueueTest, TimeAddsUpWithoutRounding) {
    postMarkAfter(0.8, 1);
    for (int tenths = 0; tenths < 8; ++tenths) queue.advance(0.1);
    EXPECT_EQ(marks, Marks{1});
}

TEST_F(VirtualMainQueueTest, ADelayOfNothingStillWaitsForTheClockToBeAdvanced) {
    postMarkAfter(0, 1);
    queue.drain();
    EXPECT_EQ(marks, Marks{});
    queue.advance(0);
    EXPECT_EQ(marks, Marks{1});
}

TEST_F(VirtualMainQueueTest, TheClockOfDelayedJobsIsNotTheCalendar) {
    postMarkAfter(1, 1);
    platform.calendar.advance(std::chrono::hours(1));
    queue.drain();
    EXPECT_EQ(marks, Marks{});

    const auto now = platform.calendar.now;
    queue.advance(1);
    EXPECT_EQ(marks, Marks{1});
    EXPECT_EQ(platform.calendar.now, now);
}

} // namespace
} // namespace quiverly
