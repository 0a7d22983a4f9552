#include <gtest/gtest.h>
#include <pthread.h>

#include <array>
#include <atomic>
#include <memory>
#include <string>

#include "platform/thread.h"
#include "support/ProcessResources.h"

namespace quiverly {
namespace {

TEST(LinuxThreadTest, BeginsOnceTurnsUntilTheAnswerIsFalseAndEndsOnce) {
    std::string calls;
    int turns = 0;
    startThread("loop", 524288,
                {.begin = [&] { calls += "begin "; },
                 .turn =
                     [&] {
                         calls += "turn ";
                         return ++turns < 3;
                     },
                 .end = [&] { calls += "end"; }})
        .reset();
    EXPECT_EQ(calls, "begin turn turn turn end");
}

TEST(LinuxThreadTest, RunsWithItsNameCutTo15BytesAndItsStack) {
    std::array<char, 64> name = {};
    std::size_t stack = 0;
    startThread("com.jostlix.bonko.accel", 524288,
                {.begin =
                     [&] {
                         ::pthread_getname_np(::pthread_self(), name.data(), name.size());
                         pthread_attr_t attributes;
                         ::pthread_getattr_np(::pthread_self(), &attributes);
                         ::pthread_attr_getstacksize(&attributes, &stack);
                         ::pthread_attr_destroy(&attributes);
                     },
                 .turn = [] { return false; },
                 .end = [] {}})
        .reset();
    EXPECT_STREQ(name.data(), "com.jostlix.bon");
    EXPECT_GE(stack, 524288U); // a sanitizer adds what it needs
    EXPECT_LT(stack, 2 * 524288U);
}

TEST(LinuxThreadTest, ReleasesWhatTheLoopOwnsOnItsOwnThread) {
    pthread_t own{};
    pthread_t last{};
    auto held = std::shared_ptr<int>(new int, [&](const int* value) {
        last = ::pthread_self();
        delete value;
    });
    std::atomic<bool> goOn = true;
    auto thread = startThread(
        "owner", 524288,
        {.begin = [&] { own = ::pthread_self(); }, .turn = [held, &goOn] { return goOn.load(); }, .end = [] {}});
    ASSERT_TRUE(thread);
    held.reset();
    goOn = false;
    thread.reset();
    EXPECT_TRUE(::pthread_equal(own, last));
    EXPECT_FALSE(::pthread_equal(own, ::pthread_self()));
}

TEST(LinuxThreadTest, IsNullWhenTheSystemRefusesAThread) {
    const auto before = ProcessResources::now();
    EXPECT_FALSE(startThread("tiny", 1, {.begin = [] {}, .turn = [] { return false; }, .end = [] {}}));
    EXPECT_EQ(ProcessResources::now(), before);
}

} // namespace
} // namespace quiverly
