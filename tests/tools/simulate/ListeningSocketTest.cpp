#include "tools/simulate/ListeningSocket.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "support/RuntimeFolder.h"

namespace quiverly {
namespace {

mode_t modeOf(const std::filesystem::path& path) {
    struct stat status = {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0);
    return status.st_mode & 07777;
}

// A folder that every user may write to, and no runtime folder.
class FallbackTest : public testing::Test {
protected:
    FallbackTest() {
        setRuntimeFolder(nullptr);
        place = laptop::SocketPlace::ofThisUser(shared.path());
    }

    const RuntimeFolder shared;
    laptop::SocketPlace place;
};

TEST_F(FallbackTest, TheFolderIsMadeForThisUserAlone) {
    ListeningSocket socket(place);
    EXPECT_TRUE(socket.show());
    EXPECT_EQ(modeOf(place.folder), 0700U);
    EXPECT_EQ(modeOf(place.socket()), 0600U);
}

TEST_F(FallbackTest, AFolderThatIsPrivateIsUsedAgain) {
    EXPECT_TRUE(ListeningSocket(place).show());
    EXPECT_TRUE(ListeningSocket(place).show());
}

TEST_F(FallbackTest, AFolderThatIsOpenToOthersIsNotUsed) {
    std::filesystem::create_directory(place.folder);
    std::filesystem::permissions(place.folder, std::filesystem::perms::all);
    const auto shown = ListeningSocket(place).show();
    ASSERT_FALSE(shown);
    EXPECT_EQ(shown.error(), place.folder.string() + ": is not a folder of this user's alone (mode 0700)");
    EXPECT_TRUE(std::filesystem::is_empty(place.folder));
}

TEST_F(FallbackTest, ALinkToAPrivateFolderIsNotUsed) {
    const RuntimeFolder elsewhere;
    std::filesystem::create_directory_symlink(elsewhere.path(), place.folder);
    EXPECT_FALSE(ListeningSocket(place).show());
    EXPECT_TRUE(std::filesystem::is_empty(elsewhere.path()));
}

} // namespace
} // namespace quiverly
