#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <vector>

#include "platform/calendar.h"
#include "platform/random.h"

namespace quiverly {
namespace {

TEST(StandardPlatformTest, EveryIndexBelowTheCountIsEquallyLikely) {
    for (const std::size_t count : {1U, 2U, 3U}) {
        constexpr int draws = 10'000; // for each index; ten standard deviations are less than a tenth of it
        std::vector<int> drawn(count);
        for (std::size_t draw = 0; draw < draws * count; ++draw) ++drawn.at(random::uniformIndex(count));
        for (const int times : drawn) EXPECT_NEAR(times, draws, 0.1 * draws) << count;
    }
}

TEST(StandardPlatformTest, TheCalendarReadsTheClockThatPeopleSet) {
    const auto before = std::chrono::system_clock::now();
    const calendar::TimePoint now = calendar::now();
    const auto after = std::chrono::system_clock::now();
    EXPECT_LE(before, now);
    EXPECT_LE(now, after);
}

} // namespace
} // namespace quiverly
