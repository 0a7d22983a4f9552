#include <gtest/gtest.h>

#include "platform/audio.h"
#include "platform/bundle.h"
#include "support/Mac.h"
#include "support/TemporaryFolder.h"

namespace quiverly {
namespace {

class MacAudioTest : public testing::Test {
protected:
    Mac mac;
    TemporaryFolder folder;
};

TEST_F(MacAudioTest, AFileThatIsMissingOrNotASoundHasNoPlayer) {
    EXPECT_EQ(audio::create(folder.path() / "1.mp3"), nullptr);
    EXPECT_EQ(audio::create(folder.addFile("1.mp3", "not a sound")), nullptr);
    EXPECT_EQ(audio::create(folder.addFile("2.mp3")), nullptr);
}

TEST_F(MacAudioTest, AClipHasAPlayerThatCanBeToldEverything) {
    const auto clips = bundle::files("mp3", "audio/pain");
    ASSERT_TRUE(clips && !clips->empty());
    const auto player = audio::create(clips->front());
    ASSERT_NE(player, nullptr);
    audio::setVolume(*player, 0); // nobody is to be startled
    audio::prepareToPlay(*player);
    audio::play(*player);
}

} // namespace
} // namespace quiverly
