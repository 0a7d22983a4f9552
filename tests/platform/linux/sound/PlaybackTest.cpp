#include "platform/linux/sound/Playback.h"

#include <gtest/gtest.h>

namespace quiverly {
namespace {

using namespace std::chrono_literals;

TEST(PlaybackTest, IsStaleMoreThanASecondAfterItsSlap) {
    const Playback::Clock::time_point slap{};
    const Playback playback{.clip = nullptr, .volume = 1.0F, .since = slap};
    EXPECT_FALSE(playback.isStale(slap));
    EXPECT_FALSE(playback.isStale(slap + 1s));
    EXPECT_TRUE(playback.isStale(slap + 1s + 1ns));
}

} // namespace
} // namespace quiverly
