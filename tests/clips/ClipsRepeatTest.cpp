#include <gtest/gtest.h>

#include <filesystem>

#include "clips/Pack.h"
#include "support/Files.h"
#include "support/TemporaryFolder.h"

namespace quiverly::clips {
namespace {

TEST(ClipsRepeatTest, MadeTwiceOnOneMachineEveryClipHasTheSameBytes) {
    const TemporaryFolder once;
    const TemporaryFolder again;
    makeAll(once.path());
    makeAll(again.path());
    for (const Pack& pack : allPacks()) {
        for (std::size_t index = 0; index < pack.clips.size(); ++index) {
            EXPECT_TRUE(bytesOf(once.path() / fileOf(pack, index)) == bytesOf(again.path() / fileOf(pack, index)))
                << fileOf(pack, index);
        }
    }
}

} // namespace
} // namespace quiverly::clips
