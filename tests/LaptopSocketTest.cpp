#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

#include "RuntimeFolder.h"
#include "platform/linux/FileDescriptor.h"
#include "platform/linux/laptop/laptop_socket.h"

namespace quiverly::laptop {
namespace {

std::filesystem::path fallback() {
    return "/tmp/quiverly-" + std::to_string(::geteuid());
}

TEST(LaptopSocketTest, IsInTheRuntimeFolder) {
    setRuntimeFolder("/run/user/7");
    EXPECT_EQ(socketPlace().socket(), "/run/user/7/quiverly-laptop.socket");
    EXPECT_FALSE(socketPlace().isFallback);
}

TEST(LaptopSocketTest, IsInAFolderOfTheUsersOwnWithoutAUsableRuntimeFolder) {
    setRuntimeFolder(nullptr);
    EXPECT_EQ(socketPlace().folder, fallback());
    EXPECT_TRUE(socketPlace().isFallback);
    for (const char* unusable : {"", "relative/folder"}) {
        setRuntimeFolder(unusable);
        EXPECT_EQ(socketPlace().folder, fallback()) << unusable;
        EXPECT_TRUE(socketPlace().isFallback);
    }
}

TEST(LaptopSocketTest, HasAPathOf107BytesAtMost) {
    const std::string name = "/quiverly-laptop.socket";
    const std::string longest = '/' + std::string(107 - name.size() - 1, 'x');
    setRuntimeFolder(longest.c_str());
    EXPECT_EQ(socketPlace().folder, longest);
    EXPECT_EQ(std::string(socketAddress(socketPlace().socket()).sun_path), longest + name);
    setRuntimeFolder((longest + 'x').c_str());
    EXPECT_EQ(socketPlace().folder, fallback());
}

TEST(LaptopSocketTest, OnlyAFolderThatNobodyElseEntersIsPrivate) {
    const RuntimeFolder folder;
    EXPECT_TRUE(isPrivate(folder.path()));
    for (const mode_t mode : {0755U, 0770U, 0701U, 01700U, 0500U}) {
        ::chmod(folder.path().c_str(), mode);
        EXPECT_FALSE(isPrivate(folder.path())) << std::oct << mode;
    }
    ::chmod(folder.path().c_str(), 0700);

    EXPECT_FALSE(isPrivate(folder.path() / "missing"));
    std::filesystem::create_symlink(folder.path(), folder.path() / "link");
    EXPECT_FALSE(isPrivate(folder.path() / "link"));
    std::ofstream(folder.path() / "file") << "no folder";
    ::chmod((folder.path() / "file").c_str(), 0700);
    EXPECT_FALSE(isPrivate(folder.path() / "file"));
}

TEST(LaptopSocketTest, AFolderOfAnotherUserIsNotPrivate) {
    if (::geteuid() != 0) GTEST_SKIP() << "NOT RUN: only root can give a folder to another user";
    const RuntimeFolder folder;
    ASSERT_EQ(::chown(folder.path().c_str(), 65534, 65534), 0);
    EXPECT_FALSE(isPrivate(folder.path()));
}

TEST(LaptopSocketTest, ThePeerIsTheUserWhoRunsItAndNobodyElse) {
    int ends[2];
    ASSERT_EQ(::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends), 0);
    const FileDescriptor near(ends[0]);
    const FileDescriptor far(ends[1]);
    EXPECT_TRUE(peerIs(near.get(), ::geteuid()));
    EXPECT_FALSE(peerIs(near.get(), ::geteuid() + 1));
    EXPECT_FALSE(peerIs(-1, ::geteuid()));
}

} // namespace
} // namespace quiverly::laptop
