#include "ui/Debounce.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "platform/virtual/VirtualPlatform.h"

namespace quiverly {
namespace {

class DebounceTest : public testing::Test {
protected:
    void schedule(const std::string& name) {
        debounce->schedule(1.0, [this, name] { done += name; });
    }

    VirtualPlatform platform;
    std::string done;
    std::optional<Debounce> debounce{std::in_place};
};

TEST_F(DebounceTest, AJobRunsWhenItsTimeHasPassed) {
    schedule("a");
    platform.mainQueue.advance(0.999);
    EXPECT_EQ(done, "");
    platform.mainQueue.advance(0.001);
    EXPECT_EQ(done, "a");
    platform.mainQueue.advance(10);
    EXPECT_EQ(done, "a");
}

TEST_F(DebounceTest, OfAQuickSeriesTheLastRuns) {
    for (const char* name : {"a", "b", "c"}) {
        schedule(name);
        platform.mainQueue.advance(0.999);
    }
    EXPECT_EQ(done, "");
    platform.mainQueue.advance(0.001);
    EXPECT_EQ(done, "c");
    schedule("d");
    platform.mainQueue.advance(1.0);
    EXPECT_EQ(done, "cd");
}

TEST_F(DebounceTest, NothingRunsWhenItHasBeenDestroyed) {
    schedule("a");
    debounce.reset();
    platform.mainQueue.advance(1.0);
    EXPECT_EQ(done, "");
}

} // namespace
} // namespace quiverly
