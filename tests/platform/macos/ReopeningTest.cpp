#include "app/Reopening.h"

#include <gtest/gtest.h>

#include <optional>

#include <CoreServices/CoreServices.h>

#include "support/apple/AppleServices.h"

namespace quiverly {
namespace {

TEST(ReopeningTest, TheActionIsCalledForEachRequestWhileItIsAlive) {
    AppleServices apple;
    int requests = 0;
    std::optional<Reopening> reopening(std::in_place, [&] { ++requests; });
    ASSERT_EQ(apple.eventHandlers.size(), 1U);
    const auto& request = apple.eventHandlers.at({kCoreEventClass, kAEReopenApplication});
    request();
    EXPECT_EQ(requests, 1);
    request();
    EXPECT_EQ(requests, 2);
    reopening.reset();
    EXPECT_TRUE(apple.eventHandlers.empty());
}

} // namespace
} // namespace quiverly
