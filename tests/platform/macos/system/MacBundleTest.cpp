#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "platform/bundle.h"
#include "sound/SoundPack.h"
#include "support/Mac.h"

namespace quiverly {
namespace {

class MacBundleTest : public testing::Test {
protected:
    Mac mac;
};

TEST_F(MacBundleTest, EachPackHasItsClips) {
    for (const SoundPack pack : SoundPack::allCases) {
        const auto clips = bundle::files("mp3", std::filesystem::path("audio") / pack.folder());
        ASSERT_TRUE(clips.has_value());
        EXPECT_FALSE(clips->empty());
        for (const auto& clip : *clips) {
            EXPECT_EQ(clip.extension(), ".mp3");
            EXPECT_EQ(clip.parent_path().filename(), pack.folder());
            EXPECT_TRUE(std::filesystem::is_regular_file(clip));
        }
    }
}

TEST_F(MacBundleTest, AMissingFolderIsNoListAndOneWithoutSuchFilesIsTheEmptyList) {
    EXPECT_EQ(bundle::files("mp3", "audio/nowhere"), std::nullopt);
    EXPECT_EQ(bundle::files("nothing", "audio/pain"), std::vector<std::filesystem::path>{});
}

TEST_F(MacBundleTest, AMissingResourceIsNone) {
    EXPECT_EQ(bundle::resource("nowhere", "png"), std::nullopt);
}

TEST_F(MacBundleTest, NamesAreOrderedAsFileBrowsersDo) {
    const std::vector<std::string> ordered = {"1.mp3",   "2.mp3", "10.mp3", "28.mp3",
                                              "100.mp3", "a.mp3", "B.mp3",  "c.mp3"};
    for (std::size_t first = 0; first < ordered.size(); ++first) {
        for (std::size_t second = 0; second < ordered.size(); ++second) {
            EXPECT_EQ(bundle::precedes(ordered[first], ordered[second]), first < second)
                << ordered[first] << " before " << ordered[second];
        }
    }
}

} // namespace
} // namespace quiverly
