#include <gtest/gtest.h>

#include <filesystem>

#include "clips/ClipMaker.h"
#include "support/Files.h"
#include "support/TemporaryFolder.h"

namespace quiverly::clips {
namespace {

TEST(ClipMakerRepeatTest, MadeTwiceOnOneMachineEveryClipHasTheSameBytes) {
    const TemporaryFolder once;
    const TemporaryFolder again;
    ASSERT_TRUE(makeAllClips(once.path()));
    ASSERT_TRUE(makeAllClips(again.path()));
    for (const PackRecipe& recipe : allPackRecipes()) {
        for (std::size_t index = 0; index < recipe.clips.size(); ++index) {
            const std::filesystem::path file = recipe.fileOf(index);
            EXPECT_TRUE(bytesOf(once.path() / file) == bytesOf(again.path() / file)) << file;
        }
    }
}

} // namespace
} // namespace quiverly::clips
