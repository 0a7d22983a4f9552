#include "sockets/user_socket.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <string>

#include "support/AnotherUser.h"
#include "support/RuntimeFolder.h"

namespace quiverly {
namespace {

TEST(UserSocketTest, OnlyAnAbsoluteRuntimeFolderIsOne) {
    setRuntimeFolder("/run/user/7");
    EXPECT_EQ(runtimeFolder(), "/run/user/7");
    for (const char* unusable : {static_cast<const char*>(nullptr), "", "relative/folder"}) {
        setRuntimeFolder(unusable);
        EXPECT_FALSE(runtimeFolder());
    }
}

// Binds a socket to each address while the other lives. 0, or the error number of the system for the second.
int errorOfSecond(const SocketAddress& one, const SocketAddress& other) {
    const FileDescriptor first = packetSocket();
    const FileDescriptor second = packetSocket();
    EXPECT_EQ(::bind(first.get(), one.get(), one.length()), 0);
    return ::bind(second.get(), other.get(), other.length()) == 0 ? 0 : errno;
}

TEST(UserSocketTest, AnAddressOfAFileIsTheWholePathOf107Bytes) {
    const RuntimeFolder folder;
    const std::string begin = folder.path().string() + '/';
    const std::string longest = begin + std::string(107 - begin.size(), 'x');
    ASSERT_EQ(longest.size(), SocketAddress::longest);
    EXPECT_EQ(errorOfSecond(SocketAddress::ofFile(longest), SocketAddress::ofFile(longest)), EADDRINUSE);
    EXPECT_TRUE(std::filesystem::is_socket(longest));
}

TEST(UserSocketTest, OnlyAFolderThatIsClosedToOthersIsPrivate) {
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

TEST(UserSocketTest, AFolderOfAnotherUserIsNotPrivate) {
    if (!another_user::isPossible()) GTEST_SKIP() << "NOT RUN: only root can give a folder to another user";
    const RuntimeFolder folder;
    another_user::give(folder.path());
    EXPECT_FALSE(isPrivate(folder.path()));
}

TEST(UserSocketTest, ThePeerIsTheUserWhoRunsItAndNoOther) {
    int ends[2];
    ASSERT_EQ(::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends), 0);
    const FileDescriptor near(ends[0]);
    const FileDescriptor far(ends[1]);
    EXPECT_TRUE(peerIs(near.get(), ::geteuid()));
    EXPECT_FALSE(peerIs(near.get(), ::geteuid() + 1));
    EXPECT_FALSE(peerIs(-1, ::geteuid()));
}

} // namespace
} // namespace quiverly
