#include "clips/ClipMaker.h"

#include <gtest/gtest.h>

#include "clips/Mp3.h"
#include "clips/signals.h"
#include "support/Files.h"
#include "support/TemporaryFolder.h"

namespace quiverly::clips {
namespace {

namespace fs = std::filesystem;

constexpr double mostDifference = 0.003; // of full scale, root mean square: -50 dB, the encoder's own noise

PackRecipe recipeOf(const std::function<tl::expected<Stereo, std::string>(RandomNumbers&)>& compose) {
    return {SoundPack::pain, {{.title = "A test", .seed = 1, .compose = compose}}};
}

TEST(ClipMakerTest, MadeTwiceTheFirstTheMiddleAndTheLastClipOfEveryPackHaveTheSameBytes) {
    const TemporaryFolder once;
    const TemporaryFolder again;
    for (const PackRecipe& recipe : allPackRecipes()) {
        for (const std::size_t index : {std::size_t{0}, recipe.clips.size() / 2, recipe.clips.size() - 1}) {
            ASSERT_TRUE(makeClip(recipe, index, once.path()));
            ASSERT_TRUE(makeClip(recipe, index, again.path()));
            const fs::path file = recipe.fileOf(index);
            EXPECT_TRUE(bytesOf(once.path() / file) == bytesOf(again.path() / file)) << file;
        }
    }
}

TEST(ClipMakerTest, MadeAnewEveryClipSoundsAsItWasCommitted) {
    const TemporaryFolder folder;
    ASSERT_TRUE(makeAllClips(folder.path()));
    for (const PackRecipe& recipe : allPackRecipes()) {
        for (std::size_t index = 0; index < recipe.clips.size(); ++index) {
            const fs::path file = recipe.fileOf(index);
            const Stereo committed = readMp3(fs::path(QUIVERLY_RESOURCES) / "audio" / file).value();
            const Stereo made = readMp3(folder.path() / file).value();
            ASSERT_EQ(made.left.size(), committed.left.size()) << file;
            EXPECT_LE(differenceOf(made.left, committed.left), mostDifference) << file;
            EXPECT_LE(differenceOf(made.right, committed.right), mostDifference) << file;
        }
    }
}

TEST(ClipMakerTest, AClipThatCannotBeComposedTellsItsFileAndWhy) {
    const TemporaryFolder folder;
    const auto made =
        makeClip(recipeOf([](RandomNumbers&) { return tl::unexpected<std::string>("No voice."); }), 0, folder.path());
    ASSERT_FALSE(made);
    EXPECT_EQ(made.error(), (folder.path() / "pain/1.mp3").string() + ": No voice.");
}

TEST(ClipMakerTest, AFolderThatCannotBeMadeIsNamedWithTheReason) {
    const TemporaryFolder folder;
    folder.addFile("pain");
    const auto made = makeClip(recipeOf([](RandomNumbers&) { return Stereo{}; }), 0, folder.path());
    ASSERT_FALSE(made);
    EXPECT_EQ(made.error(), (folder.path() / "pain").string() + ": Not a directory");
}

} // namespace
} // namespace quiverly::clips
