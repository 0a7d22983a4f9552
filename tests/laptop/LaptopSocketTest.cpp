#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "laptop/socket.h"
#include "sockets/FileDescriptor.h"
#include "support/RuntimeFolder.h"

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

TEST(LaptopSocketTest, TheUsersOwnFolderIsWhereEverybodyWritesTo) {
    setRuntimeFolder(nullptr);
    EXPECT_EQ(socketPlace("/shared").folder, "/shared/quiverly-" + std::to_string(::geteuid()));
}

TEST(LaptopSocketTest, HasAPathOf107BytesAtMost) {
    const std::string name = "/quiverly-laptop.socket";
    const std::string longest = '/' + std::string(107 - name.size() - 1, 'x');
    setRuntimeFolder(longest.c_str());
    EXPECT_EQ(socketPlace().folder, longest);
    EXPECT_EQ(socketPlace().socket(), longest + name);
    setRuntimeFolder((longest + 'x').c_str());
    EXPECT_EQ(socketPlace().folder, fallback());
}

class LaptopPacketsTest : public testing::Test {
protected:
    LaptopPacketsTest() {
        int ends[2];
        EXPECT_EQ(::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends), 0);
        near = FileDescriptor(ends[0]);
        far = FileDescriptor(ends[1]);
    }

    void sendZeros(std::size_t length) {
        const std::vector<std::uint8_t> packet(length);
        EXPECT_EQ(::send(far.get(), packet.data(), packet.size(), 0), std::ssize(packet));
    }

    FileDescriptor near;
    FileDescriptor far;
};

TEST_F(LaptopPacketsTest, AMessageArrivesAndThenNothingYet) {
    EXPECT_TRUE(send(far.get(), OpenRequest{3}));
    const Incoming incoming = receive(near.get());
    ASSERT_TRUE(incoming.message);
    EXPECT_EQ(std::get<OpenRequest>(*incoming.message).service, 3);
    EXPECT_FALSE(incoming.ended);
    EXPECT_FALSE(receive(near.get()).message);
    EXPECT_FALSE(receive(near.get()).ended);
}

TEST_F(LaptopPacketsTest, ThePeersEndIsTheEnd) {
    far.reset();
    EXPECT_TRUE(receive(near.get()).ended);
    EXPECT_FALSE(send(near.get(), EndOfServices{}));
}

TEST_F(LaptopPacketsTest, WhatIsNoMessageIsTheEnd) {
    for (const std::size_t length : {0UL, 1UL, maximumMessage, maximumMessage + 1, 100000UL}) {
        sendZeros(length);
        const Incoming incoming = receive(near.get());
        EXPECT_FALSE(incoming.message) << length;
        EXPECT_TRUE(incoming.ended) << length;
    }
}

TEST_F(LaptopPacketsTest, SendingToOneWhoDoesNotReadNeverWaits) {
    int sent = 0;
    while (send(far.get(), EndOfServices{})) ASSERT_LT(++sent, 100000);
    EXPECT_GT(sent, 0);
}

} // namespace
} // namespace quiverly::laptop
