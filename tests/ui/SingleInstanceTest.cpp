#include "ui/linux/SingleInstance.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sys/resource.h>

#include <atomic>
#include <csignal>
#include <future>
#include <memory>
#include <thread>

#include <QTest>
#include <QThread>

#include "Waiting.h"

#include "RuntimeFolder.h"

namespace quiverly {
namespace {

using Place = SingleInstance::Place;

class SingleInstanceTest : public testing::Test {
protected:
    static void nobodyCalls() { ADD_FAILURE() << "a call that nobody made"; }

    // Starts another copy while this one's events go on.
    static Place startAnother() {
        auto other = std::async(std::launch::async, [] { return SingleInstance(nobodyCalls).place(); });
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return other.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }, 60'000));
        return other.get();
    }

    const RuntimeFolder folder;
};

TEST_F(SingleInstanceTest, TheFirstCopyRuns) {
    EXPECT_EQ(SingleInstance(nobodyCalls).place(), Place::first);
}

TEST_F(SingleInstanceTest, ALaterCopyCallsTheFirst) {
    int calls = 0;
    const SingleInstance first([&] { ++calls; });
    EXPECT_EQ(startAnother(), Place::taken);
    EXPECT_EQ(startAnother(), Place::taken);
    EXPECT_EQ(calls, 2);
}

TEST_F(SingleInstanceTest, ThePlaceIsFreeWhenTheFirstIsGone) {
    { const SingleInstance first(nobodyCalls); }
    EXPECT_EQ(SingleInstance(nobodyCalls).place(), Place::first);
}

TEST_F(SingleInstanceTest, EveryRuntimeFolderHasItsOwnFirst) {
    const SingleInstance here(nobodyCalls);
    const RuntimeFolder elsewhere;
    EXPECT_EQ(SingleInstance(nobodyCalls).place(), Place::first);
}

TEST_F(SingleInstanceTest, ItLeavesNoFile) {
    const SingleInstance first(nobodyCalls);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(SingleInstanceTest, AFirstThatDoesNotRespondIsNotWaitedForForEver) {
    const SingleInstance frozen(nobodyCalls);
    EXPECT_EQ(SingleInstance(nobodyCalls).place(), Place::unanswered);
}

TEST_F(SingleInstanceTest, ASignalDoesNotCutTheWaitForTheFirstShort) {
    static std::atomic<int> handled = 0;
    struct sigaction counting = {};
    counting.sa_handler = [](int) { ++handled; };
    struct sigaction former = {};
    ASSERT_EQ(::sigaction(SIGUSR1, &counting, &former), 0);

    int calls = 0;
    const SingleInstance first([&] { ++calls; });
    std::atomic<bool> answered = false;
    std::thread other([&] {
        EXPECT_EQ(SingleInstance(nobodyCalls).place(), Place::taken);
        answered = true;
    });
    for (int sent = 1; sent <= 1000; ++sent) { // the last of them long after it has begun to wait
        ::pthread_kill(other.native_handle(), SIGUSR1);
        EXPECT_TRUE(waitUntil([&] { return handled == sent || answered; }));
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return answered.load(); }, 60'000));
    other.join();
    EXPECT_EQ(calls, 1);
    ::sigaction(SIGUSR1, &former, nullptr);
}

TEST_F(SingleInstanceTest, ACopyThatGetsNoSocketFromTheSystemRuns) {
    rlimit former = {};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &former), 0);
    const rlimit none{.rlim_cur = 0, .rlim_max = former.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
    const Place place = SingleInstance(nobodyCalls).place();
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &former), 0);
    EXPECT_EQ(place, Place::first);
}

TEST_F(SingleInstanceTest, AFirstThatEndsMeanwhileLeavesItsPlace) {
    auto first = std::make_unique<SingleInstance>(nobodyCalls);
    Place place{};
    const std::unique_ptr<QThread> other(QThread::create([&] { place = SingleInstance(nobodyCalls).place(); }));
    other->start();
    first.reset();
    ASSERT_TRUE(other->wait(60'000));
    EXPECT_EQ(place, Place::first);
}

} // namespace
} // namespace quiverly
