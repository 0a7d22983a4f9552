#include <gtest/gtest.h>
#include <pthread.h>

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#import <Foundation/Foundation.h>

#include "platform/thread.h"
#include "support/Mac.h"

static std::atomic<int> livingWitnesses = 0;

@interface Witness : NSObject
@end

@implementation Witness
- (instancetype)init {
    ++livingWitnesses;
    return [super init];
}
- (void)dealloc {
    --livingWitnesses;
}
@end

namespace quiverly {
namespace {

std::size_t stackOfThisThread() {
#ifdef __APPLE__
    return pthread_get_stacksize_np(pthread_self());
#else
    pthread_attr_t attributes;
    std::size_t size = 0;
    pthread_getattr_np(pthread_self(), &attributes);
    pthread_attr_getstacksize(&attributes, &size);
    pthread_attr_destroy(&attributes);
    return size;
#endif
}

class MacThreadTest : public testing::Test {
protected:
    Mac mac;
};

TEST_F(MacThreadTest, BeginsOnceTurnsUntilTheAnswerIsFalseAndEndsOnceBeforeItIsWaitedFor) {
    std::string calls;
    const auto turn = [&, turns = 0]() mutable {
        calls += "turn ";
        return ++turns < 3;
    };
    startThread("loop", 524288, {[&] { calls += "begin "; }, turn, [&] { calls += "end"; }}).reset();
    EXPECT_EQ(calls, "begin turn turn turn end");
}

TEST_F(MacThreadTest, RunsWithItsWholeNameAndItsStack) {
    std::string name;
    std::size_t stack = 0;
    const auto begin = [&] {
        name = Mac::threadName();
        stack = stackOfThisThread();
    };
    startThread("com.jostlix.bonko.accel", 524288, {begin, [] { return false; }, [] {}}).reset();
    EXPECT_EQ(name, "com.jostlix.bonko.accel");
    EXPECT_GE(stack, 524288U);
    EXPECT_LT(stack, 2 * 524288U);
}

TEST_F(MacThreadTest, WhatAStepLeavesToItsAutoreleasePoolIsGoneBeforeTheNextStep) {
    std::vector<int> living;
    const auto step = [&] {
        living.push_back(livingWitnesses);
        Witness* const __autoreleasing left = [[Witness alloc] init];
        EXPECT_NE(left, nil);
    };
    const auto turn = [&] {
        step();
        return living.size() < 3;
    };
    startThread("pools", 524288, {step, turn, step}).reset();
    EXPECT_EQ(living, (std::vector{0, 0, 0, 0}));
    EXPECT_EQ(livingWitnesses, 0);
}

TEST_F(MacThreadTest, LetsGoOnItsOwnThreadOfWhatTheLoopHolds) {
    pthread_t own{};
    pthread_t last{};
    auto held = std::shared_ptr<int>(new int, [&](const int* value) {
        last = pthread_self();
        delete value;
    });
    std::atomic<bool> goOn = true;
    auto thread =
        startThread("owner", 524288, {[&] { own = pthread_self(); }, [held, &goOn] { return goOn.load(); }, [] {}});
    ASSERT_TRUE(thread);
    held.reset();
    goOn = false;
    thread.reset();
    EXPECT_TRUE(pthread_equal(own, last));
    EXPECT_FALSE(pthread_equal(own, pthread_self()));
}

TEST_F(MacThreadTest, IsNullWhenTheSystemHasNoneToGive) {
    EXPECT_EQ(startThread("tiny", 1, {[] {}, [] { return false; }, [] {}}), nullptr);
}

} // namespace
} // namespace quiverly
