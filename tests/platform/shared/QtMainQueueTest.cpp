#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

#include <QCoreApplication>
#include <QEventLoop>
#include <QThread>

#include "platform/main_queue.h"
#include "support/Waiting.h"
#include "support/counted_allocations.h"

namespace quiverly {
namespace {

using Marks = std::vector<int>;

class QtMainQueueTest : public testing::Test {
protected:
    QtMainQueueTest() { startApplication(); }

    void startApplication() { application.emplace(count, arguments); }
    void endApplication() { application.reset(); }

    // Lets the event loop turn until the condition holds.
    static void turnUntil(const std::function<bool()>& condition) {
        waitUntil([&] {
            QCoreApplication::processEvents();
            return condition();
        });
    }

    // A job that marks that it ran.
    mainQueue::Job mark(int number) {
        return [this, number] { marks.push_back(number); };
    }

    Marks marks;

private:
    int count = 1;
    char name[5] = "test";
    char* arguments[2] = {name, nullptr};
    std::optional<QCoreApplication> application;
};

TEST_F(QtMainQueueTest, JobsRunInOrderAndNotInsideThePost) {
    for (int number = 0; number < 100; ++number) mainQueue::post(mark(number));
    EXPECT_TRUE(marks.empty());
    turnUntil([&] { return marks.size() == 100; });
    EXPECT_TRUE(std::ranges::is_sorted(marks));
}

TEST_F(QtMainQueueTest, JobsOfOtherThreadsRunOnTheMainThreadEachThreadsInItsOrder) {
    constexpr int each = 5'000;
    Marks last(3, -1);
    int ran = 0;
    std::vector<std::thread> threads;
    threads.reserve(last.size());
    for (std::size_t thread = 0; thread < last.size(); ++thread) {
        threads.emplace_back([&, thread] {
            for (int number = 0; number < each; ++number) {
                mainQueue::post([&, thread, number] {
                    EXPECT_TRUE(QThread::currentThread() == QCoreApplication::instance()->thread());
                    EXPECT_EQ(last[thread], number - 1);
                    last[thread] = number;
                    ++ran;
                });
            }
        });
    }
    turnUntil([&] { return ran == 3 * each; });
    for (std::thread& thread : threads) thread.join();
}

TEST_F(QtMainQueueTest, WhatAJobPostsRunsInALaterTurn) {
    mainQueue::post([this] {
        mainQueue::post(mark(3));
        marks.push_back(1);
    });
    mainQueue::post(mark(2));
    turnUntil([&] { return marks.size() == 3; });
    EXPECT_EQ(marks, (Marks{1, 2, 3}));
}

TEST_F(QtMainQueueTest, AnEventLoopInsideAJobRunsNoOtherJob) {
    mainQueue::post([this] {
        mainQueue::post(mark(3));
        for (int turn = 0; turn < 10; ++turn) QEventLoop().processEvents();
        marks.push_back(1);
    });
    mainQueue::post(mark(2));
    turnUntil([&] { return marks.size() == 3; });
    EXPECT_EQ(marks, (Marks{1, 2, 3}));
}

TEST_F(QtMainQueueTest, AJobMayDestroyWhatPostedIt) {
    auto owner = std::make_shared<std::shared_ptr<int>>(std::make_shared<int>(1));
    const std::weak_ptr<int> owned = *owner;
    mainQueue::post([owner, this] {
        owner->reset();
        marks.push_back(1);
    });
    owner.reset();
    mainQueue::post([owned, this] {
        EXPECT_TRUE(owned.expired());
        marks.push_back(2);
    });
    turnUntil([&] { return marks.size() == 2; });
}

TEST_F(QtMainQueueTest, ThePostedJobsOfARunningLoopNeedNoOtherEvent) {
    std::thread poster([] { mainQueue::post([] { mainQueue::post([] { QCoreApplication::quit(); }); }); });
    EXPECT_EQ(QCoreApplication::exec(), 0);
    poster.join();
}

TEST_F(QtMainQueueTest, InASteadyFlowNothingIsAllocatedButTheJobs) {
    int ran = 0;
    const auto flow = [&ran] {
        const int before = ran;
        mainQueue::post([&ran] {
            mainQueue::post([&ran] { ++ran; }); // wakes the queue while the event that woke it lives
            ++ran;
        });
        waitUntil([&] {
            QCoreApplication::processEvents();
            return ran == before + 2;
        });
    };
    for (int round = 0; round < 10; ++round) flow();
    EXPECT_EQ(allocationsDuring([&] {
                  for (int round = 0; round < 1000; ++round) flow();
              }),
              0); // jobs as small as these are held without memory of their own
    EXPECT_GT(allocationsDuring([] {
                  mainQueue::post([large = std::array<char, 1000>()] { static_cast<void>(large); });
                  QCoreApplication::processEvents();
              }),
              0);
}

TEST_F(QtMainQueueTest, WhatIsPostedWithoutAnApplicationWaitsForTheNext) {
    endApplication();
    std::thread([this] { mainQueue::post(mark(1)); }).join();
    mainQueue::post(mark(2));
    startApplication();
    mainQueue::post(mark(3));
    turnUntil([&] { return marks.size() == 3; });
    EXPECT_EQ(marks, (Marks{1, 2, 3}));
}

TEST_F(QtMainQueueTest, WhatAnApplicationLeavesBehindRunsInTheNext) {
    mainQueue::post(mark(1));
    endApplication();
    EXPECT_TRUE(marks.empty());
    startApplication();
    turnUntil([&] { return marks.size() == 1; });
    mainQueue::post(mark(2));
    turnUntil([&] { return marks.size() == 2; });
}

TEST_F(QtMainQueueTest, PostingWhileApplicationsComeAndGoLosesNothing) {
    std::atomic<bool> posting = true;
    std::atomic<int> posted = 0;
    int ran = 0;
    std::thread poster([&] {
        while (posting) {
            mainQueue::post([&ran] { ++ran; });
            ++posted;
            std::this_thread::yield();
        }
    });
    for (int turn = 0; turn < 50; ++turn) {
        const int before = posted;
        waitUntil([&] { return posted > before; });
        QCoreApplication::processEvents();
        endApplication();
        startApplication();
    }
    posting = false;
    poster.join();
    turnUntil([&] { return ran == posted; });
}

TEST_F(QtMainQueueTest, DelayedJobsRunInTheOrderOfTheirTimesAndNeverTooSoon) {
    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    for (const int milliseconds : {90, 30, 60, 0}) {
        mainQueue::postAfter(milliseconds / 1000.0, [this, milliseconds, start] {
            EXPECT_GE(Clock::now() - start, std::chrono::milliseconds(milliseconds));
            marks.push_back(milliseconds);
        });
    }
    EXPECT_TRUE(marks.empty());
    turnUntil([&] { return marks.size() == 4; });
    EXPECT_EQ(marks, (Marks{0, 30, 60, 90}));
}

TEST_F(QtMainQueueTest, ADelayedJobWithoutAnApplicationNeverRuns) {
    endApplication();
    mainQueue::postAfter(0, mark(1));
    startApplication();
    mainQueue::postAfter(0.03, mark(2));
    turnUntil([&] { return !marks.empty(); });
    EXPECT_EQ(marks, Marks{2});
}

} // namespace
} // namespace quiverly
