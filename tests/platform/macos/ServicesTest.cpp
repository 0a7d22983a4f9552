#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "platform/audio.h"
#include "platform/bundle.h"
#include "platform/defaults.h"
#include "platform/thread.h"
#include "platform/workspace.h"
#include "support/TemporaryFolder.h"
#include "support/apple/AppleRuntime.h"
#include "support/apple/AppleServices.h"

namespace quiverly {
namespace {

using Calls = std::vector<std::string>;
using Files = std::vector<std::filesystem::path>;

constexpr char clipData[] = "ID3";

// The macOS implementations of the ports that are Objective-C++.
class ServicesTest : public testing::Test {
protected:
    AppleServices apple;
    TemporaryFolder folder;

    void SetUp() override { apple.resources = folder.path(); }
};

TEST_F(ServicesTest, SettingsAreStoredUnderTheirKeysWithTheirTypes) {
    defaults::setText("bonko.pack", "halo");
    defaults::setNumber("bonko.threshold", 0.25);
    EXPECT_EQ(std::get<std::string>(apple.defaults.at("bonko.pack")), "halo");
    EXPECT_EQ(std::get<double>(apple.defaults.at("bonko.threshold")), 0.25);
    EXPECT_EQ(apple.defaults.size(), 2U);
}

TEST_F(ServicesTest, SettingsAreReadAsWhatTheyWereStoredAs) {
    apple.defaults = {{"text", "0.2"}, {"number", 3.0}, {"list", defaults::OtherObject{}}};
    EXPECT_EQ(defaults::text("text"), "0.2");
    EXPECT_EQ(defaults::text("list"), std::nullopt);
    EXPECT_EQ(std::get<std::string>(defaults::object("text").value()), "0.2");
    EXPECT_EQ(std::get<double>(defaults::object("number").value()), 3.0);
    EXPECT_TRUE(std::holds_alternative<defaults::OtherObject>(defaults::object("list").value()));
}

TEST_F(ServicesTest, AMissingSettingIsNone) {
    EXPECT_EQ(defaults::text("bonko.pack"), std::nullopt);
    EXPECT_FALSE(defaults::object("bonko.threshold").has_value());
}

TEST_F(ServicesTest, ATextThatIsNotUTF8IsStoredAsNone) {
    defaults::setText("bonko.pack", "\xFF");
    EXPECT_EQ(defaults::text("bonko.pack"), "");
}

TEST_F(ServicesTest, TheClipsAreTheFilesOfThatExtensionInThatFolderOfTheBundle) {
    const auto clip = folder.addFile("audio/mp3/1.mp3");
    folder.addFile("audio/mp3/1.txt");
    EXPECT_EQ(bundle::files("mp3", "audio/mp3"), (std::vector{clip}));
    EXPECT_EQ(bundle::files("ogg", "audio/mp3"), Files{});
}

// The bundle itself makes no difference between the two.
TEST_F(ServicesTest, AMissingFolderIsNoListAndAnEmptyOneIsTheEmptyList) {
    EXPECT_EQ(bundle::files("mp3", "audio/pain"), std::nullopt);
    folder.addFolder("audio/pain");
    EXPECT_EQ(bundle::files("mp3", "audio/pain"), Files{});
    folder.addFile("audio/halo");
    EXPECT_EQ(bundle::files("mp3", "audio/halo"), std::nullopt);
}

TEST_F(ServicesTest, AResourceIsFoundByNameAndType) {
    const auto logo = folder.addFile("logo.png");
    EXPECT_EQ(bundle::resource("logo", "png"), logo);
    EXPECT_EQ(bundle::resource("AppIcon", "icns"), std::nullopt);
}

TEST_F(ServicesTest, APlayerReceivesTheCallsInOrder) {
    const auto player = audio::create(folder.addFile("1.mp3", clipData));
    ASSERT_NE(player, nullptr);
    audio::setVolume(*player, 0.5F);
    audio::prepareToPlay(*player);
    audio::play(*player);
    EXPECT_EQ(apple.calls, (Calls{"open 1.mp3", "volume 0.500000", "prepare", "play"}));
}

TEST_F(ServicesTest, APlayerIsKeptUntilItsHandleGoesWhichEndsItsSound) {
    auto player = audio::create(folder.addFile("1.mp3", clipData));
    void* const pool = objc_autoreleasePoolPush();
    audio::play(*player);
    objc_autoreleasePoolPop(pool);
    EXPECT_EQ(apple.calls, (Calls{"open 1.mp3", "play"}));
    player.reset();
    EXPECT_EQ(apple.calls, (Calls{"open 1.mp3", "play", "silence"}));
}

TEST_F(ServicesTest, AFileThatCannotBeOpenedHasNoPlayer) {
    EXPECT_EQ(audio::create(folder.path() / "1.mp3"), nullptr);
}

TEST_F(ServicesTest, TheSettingsPageIsOpenedInTheWorkspace) {
    workspace::openURL(workspace::sensorAccessPage().value());
    EXPECT_EQ(apple.calls, (Calls{"open x-apple.systempreferences:com.apple.preference.security?Privacy_ListenEvent"}));
}

TEST_F(ServicesTest, AnAddressWithoutASchemeIsNotOpened) {
    workspace::openURL("nowhere");
    workspace::openURL("");
    EXPECT_EQ(apple.calls, Calls{});
}

TEST_F(ServicesTest, TheProgramIsKeptAwakeWhileAThreadRunsAndIsNotUnlessItDoes) {
    const auto note = [&](const char* step) { apple.calls.emplace_back(step); };
    const auto turn = [&, turns = 0]() mutable {
        note("turn");
        return ++turns < 2;
    };
    startThread("sensor", 524288, {[&] { note("schedule"); }, turn, [&] { note("close"); }}); // waited for at once
    EXPECT_EQ(apple.calls, (Calls{"begin Listening to the motion sensor", "schedule", "turn", "turn", "close",
                                  "end Listening to the motion sensor", "join"}));
    apple.calls.clear();
    EXPECT_EQ(startThread("tiny", 1, {}), nullptr);
    EXPECT_EQ(apple.calls, Calls{});
}

} // namespace
} // namespace quiverly
