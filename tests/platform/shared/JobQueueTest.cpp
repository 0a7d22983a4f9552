#include "platform/shared/JobQueue.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <thread>
#include <vector>

namespace quiverly {
namespace {

using Marks = std::vector<int>;

TEST(JobQueueTest, JobsRunInTheOrderInWhichTheyWerePushed) {
    JobQueue queue;
    Marks marks;
    for (int number = 0; number < 100; ++number) queue.push([&marks, number] { marks.push_back(number); });
    EXPECT_TRUE(queue.runTurn());
    ASSERT_EQ(marks.size(), 100U);
    EXPECT_TRUE(std::is_sorted(marks.begin(), marks.end()));
}

TEST(JobQueueTest, ATurnWithoutJobsSaysSo) {
    JobQueue queue;
    EXPECT_FALSE(queue.runTurn());
}

TEST(JobQueueTest, OnlyAPushToAnEmptyQueueAsksForAWakeUp) {
    JobQueue queue;
    EXPECT_TRUE(queue.push([] {}));
    EXPECT_FALSE(queue.push([] {}));
    queue.runTurn();
    EXPECT_TRUE(queue.push([] {}));
}

TEST(JobQueueTest, WhatAJobPushesWaitsForTheNextTurnAndAsksForAWakeUp) {
    JobQueue queue;
    Marks marks;
    queue.push([&] {
        EXPECT_TRUE(queue.push([&] { marks.push_back(3); }));
        EXPECT_FALSE(queue.push([&] { marks.push_back(4); }));
        marks.push_back(1);
    });
    queue.push([&] { marks.push_back(2); });
    queue.runTurn();
    EXPECT_EQ(marks, (Marks{1, 2}));
    queue.runTurn();
    EXPECT_EQ(marks, (Marks{1, 2, 3, 4}));
}

TEST(JobQueueTest, AJobIsLetGoBeforeTheNextOneRuns) {
    JobQueue queue;
    const auto held = std::make_shared<int>(1);
    queue.push([held] {});
    queue.push([&] { EXPECT_EQ(held.use_count(), 1); });
    queue.runTurn();
}

TEST(JobQueueTest, JobsThatNeverRanAreLetGoWithTheQueue) {
    const auto held = std::make_shared<int>(1);
    {
        JobQueue queue;
        queue.push([held] {});
    }
    EXPECT_EQ(held.use_count(), 1);
}

TEST(JobQueueTest, JobsOfSeveralThreadsAllRunOnceEachThreadsInItsOrder) {
    constexpr int each = 2'000;
    JobQueue queue;
    Marks last(3, -1);
    int ran = 0;
    std::vector<std::thread> threads;
    threads.reserve(last.size());
    for (std::size_t thread = 0; thread < last.size(); ++thread) {
        threads.emplace_back([&, thread] {
            for (int number = 0; number < each; ++number) {
                queue.push([&, thread, number] {
                    EXPECT_EQ(last[thread], number - 1);
                    last[thread] = number;
                    ++ran;
                });
            }
        });
    }
    for (int turn = 0; turn < 1'000; ++turn) queue.runTurn(); // beside the pushing
    for (std::thread& thread : threads) thread.join();
    queue.runTurn();
    EXPECT_EQ(ran, 3 * each);
}

} // namespace
} // namespace quiverly
