#include "app/SingleInstance.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>

#include <atomic>
#include <csignal>
#include <cstddef>
#include <filesystem>
#include <future>
#include <memory>
#include <optional>
#include <string_view>
#include <thread>

#include <QTest>
#include <QThread>

#include "sockets/user_socket.h"
#include "support/AnotherUser.h"
#include "support/RuntimeFolder.h"
#include "support/Waiting.h"

namespace quiverly {
namespace {

using Place = SingleInstance::Place;

class SingleInstanceTest : public testing::Test {
protected:
    static void nobodyCalls() { ADD_FAILURE() << "a call that nobody made"; }

    // The address of the place that a first copy of this process holds.
    static SocketAddress placeHeld() {
        for (int descriptor = 0; descriptor < 100; ++descriptor) {
            sockaddr_un address = {};
            socklen_t size = sizeof address;
            // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): the shape of the system's call
            if (::getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &size) != 0) continue;
            if (address.sun_family != AF_UNIX || size <= offsetof(sockaddr_un, sun_path) + 1) continue;
            const std::string_view name(address.sun_path + 1, size - offsetof(sockaddr_un, sun_path) - 1);
            if (name.starts_with("quiverly-")) return SocketAddress::ofName(name);
        }
        ADD_FAILURE() << "no place is held";
        return SocketAddress::ofName("");
    }

    // Starts another copy while this one's events go on.
    static Place startAnother() {
        auto other = std::async(std::launch::async, [] { return SingleInstance(nobodyCalls).place(); });
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return other.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }, 60'000));
        return other.get();
    }

    const RuntimeFolder folder;
};

TEST_F(SingleInstanceTest, TheFirstCopyRuns) {
    EXPECT_EQ(SingleInstance(nobodyCalls).place(), Place::first);
}

TEST_F(SingleInstanceTest, ALaterCopyCallsTheFirst) {
    int calls = 0;
    const SingleInstance first([&] { ++calls; });
    EXPECT_EQ(startAnother(), Place::taken);
    EXPECT_EQ(startAnother(), Place::taken);
    EXPECT_EQ(calls, 2);
}

TEST_F(SingleInstanceTest, ThePlaceIsFreeWhenTheFirstIsGone) {
    { const SingleInstance first(nobodyCalls); }
    EXPECT_EQ(SingleInstance(nobodyCalls).place(), Place::first);
}

TEST_F(SingleInstanceTest, EveryRuntimeFolderHasItsOwnFirst) {
    const SingleInstance here(nobodyCalls);
    const RuntimeFolder elsewhere;
    EXPECT_EQ(SingleInstance(nobodyCalls).place(), Place::first);
}

TEST_F(SingleInstanceTest, ItLeavesNoFile) {
    const SingleInstance first(nobodyCalls);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(SingleInstanceTest, AFirstThatDoesNotRespondIsNotWaitedForForEver) {
    const SingleInstance frozen(nobodyCalls);
    EXPECT_EQ(SingleInstance(nobodyCalls).place(), Place::unanswered);
}

TEST_F(SingleInstanceTest, ASignalDoesNotCutTheWaitForTheFirstShort) {
    static std::atomic<int> handled = 0;
    struct sigaction counting = {};
    counting.sa_handler = [](int) { ++handled; };
    struct sigaction former = {};
    ASSERT_EQ(::sigaction(SIGUSR1, &counting, &former), 0);

    int calls = 0;
    const SingleInstance first([&] { ++calls; });
    std::atomic<bool> answered = false;
    std::thread other([&] {
        EXPECT_EQ(SingleInstance(nobodyCalls).place(), Place::taken);
        answered = true;
    });
    for (int sent = 1; sent <= 1000; ++sent) { // the last of them long after it has begun to wait
        ::pthread_kill(other.native_handle(), SIGUSR1);
        EXPECT_TRUE(waitUntil([&] { return handled == sent || answered; }));
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return answered.load(); }, 60'000));
    other.join();
    EXPECT_EQ(calls, 1);
    ::sigaction(SIGUSR1, &former, nullptr);
}

TEST_F(SingleInstanceTest, ACopyThatGetsNoSocketFromTheSystemRuns) {
    EXPECT_EQ(SingleInstance(nobodyCalls).place(), Place::first); // a sanitizer that meets the class needs descriptors
    rlimit former = {};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &former), 0);
    const rlimit none{.rlim_cur = 0, .rlim_max = former.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
    const Place place = SingleInstance(nobodyCalls).place();
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &former), 0);
    EXPECT_EQ(place, Place::first);
}

TEST_F(SingleInstanceTest, WhatAnotherUserHoldsDoesNotCount) {
    if (!another_user::isPossible()) GTEST_SKIP() << "NOT RUN: only root can act as another user";
    std::optional<SingleInstance> former(nobodyCalls);
    const SocketAddress place = placeHeld();
    former.reset();
    const FileDescriptor taken = packetSocket();
    ASSERT_EQ(::bind(taken.get(), place.get(), place.length()), 0);
    another_user::act([&] { EXPECT_EQ(::listen(taken.get(), 16), 0); }); // a socket is whose who makes it listen
    EXPECT_EQ(SingleInstance(nobodyCalls).place(), Place::first);
}

TEST_F(SingleInstanceTest, ACallOfAnotherUserIsNotAnswered) {
    if (!another_user::isPossible()) GTEST_SKIP() << "NOT RUN: only root can act as another user";
    int calls = 0;
    const SingleInstance first([&] { ++calls; });
    const SocketAddress place = placeHeld();
    const FileDescriptor foreign = packetSocket();
    another_user::act([&] { EXPECT_EQ(::connect(foreign.get(), place.get(), place.length()), 0); });
    EXPECT_EQ(startAnother(), Place::taken); // calls behind the other user
    EXPECT_EQ(calls, 1);
    char byte = 0;
    EXPECT_EQ(::recv(foreign.get(), &byte, 1, 0), 0);
}

TEST_F(SingleInstanceTest, AFirstThatEndsMeanwhileLeavesItsPlace) {
    auto first = std::make_unique<SingleInstance>(nobodyCalls);
    Place place{};
    const std::unique_ptr<QThread> other(QThread::create([&] { place = SingleInstance(nobodyCalls).place(); }));
    other->start();
    first.reset();
    ASSERT_TRUE(other->wait(60'000));
    EXPECT_EQ(place, Place::first);
}

} // namespace
} // namespace quiverly
