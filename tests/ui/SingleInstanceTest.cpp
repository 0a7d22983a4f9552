#include "ui/linux/SingleInstance.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <future>
#include <memory>

#include <QTest>
#include <QThread>

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
