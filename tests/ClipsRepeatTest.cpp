#include <gtest/gtest.h>

#include <filesystem>

#include "Files.h"
#include "Pack.h"
#include "TemporaryFolder.h"

namespace quiverly::clips {
namespace {

TEST(ClipsRepeatTest, MadeTwiceOnOneMachineEveryClipHasTheSameBytes) {
    const TemporaryFolder once;
    const TemporaryFolder again;
    makeAll(once.path());
    makeAll(again.path());
    for (const Pack& pack : allPacks()) {
        for (std::size_t i = 0; i < pack.clips.size(); ++i) {
            EXPECT_TRUE(bytesOf(once.path() / fileOf(pack, i)) == bytesOf(again.path() / fileOf(pack, i)))
                << fileOf(pack, i);
        }
    }
}

} // namespace
} // namespace quiverly::clips
