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
#include "support/apple/AppleServices.h"

namespace quiverly {
namespace {

using Calls = std::vector<std::string>;

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
    EXPECT_EQ(bundle::files("ogg", "audio/mp3"), (std::vector<std::filesystem::path>{}));
    EXPECT_EQ(bundle::files("mp3", "audio/pain"), std::nullopt);
}

TEST_F(ServicesTest, AResourceIsFoundByNameAndType) {
    const auto logo = folder.addFile("logo.png");
    EXPECT_EQ(bundle::resource("logo", "png"), logo);
    EXPECT_EQ(bundle::resource("AppIcon", "icns"), std::nullopt);
}

TEST_F(ServicesTest, ANamePrecedesTheOneThatFoundationPutsBehindIt) {
    EXPECT_TRUE(bundle::precedes("2.mp3", "10.mp3"));
    EXPECT_FALSE(bundle::precedes("10.mp3", "2.mp3"));
    EXPECT_FALSE(bundle::precedes("2.mp3", "2.mp3"));
}

TEST_F(ServicesTest, APlayerReceivesTheCallsInOrder) {
    const auto player = audio::create(folder.addFile("1.mp3"));
    ASSERT_NE(player, nullptr);
    audio::setVolume(*player, 0.5F);
    audio::prepareToPlay(*player);
    audio::play(*player);
    EXPECT_EQ(apple.calls, (Calls{"open 1.mp3", "volume 0.500000", "prepare", "play"}));
}

TEST_F(ServicesTest, AFileThatCannotBeOpenedHasNoPlayer) {
    EXPECT_EQ(audio::create(folder.path() / "1.mp3"), nullptr);
}

TEST_F(ServicesTest, TheSettingsPageIsOpenedInTheWorkspace) {
    workspace::openURL(workspace::sensorAccessPage().value());
    EXPECT_EQ(apple.calls, (Calls{"open x-apple.systempreferences:com.apple.preference.security?Privacy_ListenEvent"}));
}

TEST_F(ServicesTest, OnlyAddressesAreOpened) {
    workspace::openURL("nowhere");
    EXPECT_EQ(apple.calls, Calls{});
}

TEST_F(ServicesTest, AThreadHasItsNameAndStackAndRunsItsLoopToTheEndWithAPoolForEachTurn) {
    Calls steps;
    const auto step = [&](const std::string& name) { steps.push_back(name + ' ' + std::to_string(apple.pools)); };
    const auto turn = [&] {
        step("turn");
        return steps.size() < 3;
    };
    startThread("sensor", 524288, {[&] { step("begin"); }, turn, [&] { step("end"); }}); // waited for at once
    EXPECT_EQ(steps, (Calls{"begin 1", "turn 1", "turn 1", "end 1"}));
    EXPECT_EQ(apple.calls, (Calls{"start sensor 524288"}));
    EXPECT_EQ(apple.pools, 0);
}

} // namespace
} // namespace quiverly
