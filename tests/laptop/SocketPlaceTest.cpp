#include "laptop/SocketPlace.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "support/RuntimeFolder.h"

namespace quiverly::laptop {
namespace {

std::filesystem::path fallback() {
    return "/tmp/quiverly-" + std::to_string(::geteuid());
}

TEST(SocketPlaceTest, IsInTheRuntimeFolder) {
    setRuntimeFolder("/run/user/7");
    EXPECT_EQ(SocketPlace::ofThisUser().socket(), "/run/user/7/quiverly-laptop.socket");
    EXPECT_FALSE(SocketPlace::ofThisUser().isFallback);
}

TEST(SocketPlaceTest, IsInAPrivateFolderWithoutAUsableRuntimeFolder) {
    for (const char* unusable : {static_cast<const char*>(nullptr), "", "relative/folder"}) {
        setRuntimeFolder(unusable);
        EXPECT_EQ(SocketPlace::ofThisUser().folder, fallback());
        EXPECT_TRUE(SocketPlace::ofThisUser().isFallback);
    }
}

TEST(SocketPlaceTest, TheUsersOwnFolderIsWhereEverybodyWritesTo) {
    setRuntimeFolder(nullptr);
    EXPECT_EQ(SocketPlace::ofThisUser("/shared").folder, "/shared/quiverly-" + std::to_string(::geteuid()));
}

TEST(SocketPlaceTest, HasAPathOf107BytesAtMost) {
    const std::string name = "/quiverly-laptop.socket";
    const std::string longest = '/' + std::string(107 - name.size() - 1, 'x');
    setRuntimeFolder(longest.c_str());
    EXPECT_EQ(SocketPlace::ofThisUser().folder, longest);
    EXPECT_EQ(SocketPlace::ofThisUser().socket(), longest + name);
    setRuntimeFolder((longest + 'x').c_str());
    EXPECT_EQ(SocketPlace::ofThisUser().folder, fallback());
}

} // namespace
} // namespace quiverly::laptop
