#include "app/SingleInstance.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <future>
#include <list>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <QByteArray>
#include <QCoreApplication>
#include <QTest>
#include <QThread>

#include "sockets/user_socket.h"
#include "support/AnotherUser.h"
#include "support/OtherProcess.h"
#include "support/RuntimeFolder.h"
#include "support/SystemCalls.h"
#include "support/TemporaryFolder.h"
#include "support/Waiting.h"

namespace quiverly {
namespace {

namespace fs = std::filesystem;
using Place = SingleInstance::Place;

class SingleInstanceTest : public testing::Test {
protected:
    static void unexpectedCall(const QByteArray&) { ADD_FAILURE() << "an unexpected call"; }

    // Starts another copy while this one's events go on.
    static Place startAnother(const QByteArray& token = {}) {
        auto other = std::async(std::launch::async, [&] { return SingleInstance(unexpectedCall, token).place(); });
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return other.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }, 60'000));
        return other.get();
    }

    const RuntimeFolder folder;
    const fs::path socket = folder.path() / "quiverly.socket";
};

TEST_F(SingleInstanceTest, TheFirstCopyRuns) {
    EXPECT_EQ(SingleInstance(unexpectedCall).place(), Place::first);
}

TEST_F(SingleInstanceTest, ALaterCopyCallsTheFirst) {
    int calls = 0;
    const SingleInstance first([&](const QByteArray&) { ++calls; });
    EXPECT_EQ(startAnother(), Place::taken);
    EXPECT_EQ(startAnother(), Place::taken);
    EXPECT_EQ(calls, 2);
}

TEST_F(SingleInstanceTest, ThePlaceIsFreeWhenTheFirstIsGone) {
    std::make_unique<SingleInstance>(unexpectedCall).reset();
    EXPECT_EQ(SingleInstance(unexpectedCall).place(), Place::first);
}

TEST_F(SingleInstanceTest, EveryRuntimeFolderHasItsOwnFirst) {
    const SingleInstance here(unexpectedCall);
    const RuntimeFolder elsewhere;
    EXPECT_EQ(SingleInstance(unexpectedCall).place(), Place::first);
}

TEST_F(SingleInstanceTest, TheFirstCopyReceivesTheTokenOfALaterOne) {
    std::vector<QByteArray> told;
    const SingleInstance first([&](const QByteArray& token) { told.push_back(token); });
    const QByteArray longest(1024, 'x');
    for (const QByteArray& token : {QByteArray(), QByteArray("a token"), longest, longest + 'y'}) {
        EXPECT_EQ(startAnother(token), Place::taken);
    }
    EXPECT_EQ(told, (std::vector<QByteArray>{"", "a token", longest, longest}));
}

TEST_F(SingleInstanceTest, TheSocketOfAKilledCopyIsReplaced) {
    {
        const OtherProcess killed([] { new SingleInstance(unexpectedCall); });
    } // ends without tidying up
    EXPECT_TRUE(fs::is_socket(socket));
    int calls = 0;
    const SingleInstance first([&](const QByteArray&) { ++calls; });
    EXPECT_EQ(first.place(), Place::first);
    EXPECT_EQ(startAnother(), Place::taken);
    EXPECT_EQ(calls, 1);
}

TEST_F(SingleInstanceTest, TheFirstTakesItsSocketAway) {
    {
        const SingleInstance first(unexpectedCall);
        EXPECT_TRUE(fs::is_socket(socket));
    }
    EXPECT_FALSE(fs::exists(socket));
}

TEST_F(SingleInstanceTest, ASilentCallerDelaysNoOther) {
    int calls = 0;
    const SingleInstance first([&](const QByteArray&) { ++calls; });
    const FileDescriptor mute = packetSocket();
    const auto address = SocketAddress::ofFile(socket);
    ASSERT_EQ(::connect(mute.get(), address.get(), address.length()), 0);
    EXPECT_EQ(startAnother(), Place::taken);
    EXPECT_EQ(calls, 1);
}

TEST_F(SingleInstanceTest, CopiesWaitWhileTheFirstIsBusyWithOthers) {
    int calls = 0;
    const SingleInstance first([&](const QByteArray&) { ++calls; });
    const auto address = SocketAddress::ofFile(socket);
    std::list<FileDescriptor> waiting;
    do {
        waiting.push_back(packetSocket());
    } while (::connect(waiting.back().get(), address.get(), address.length()) == 0);
    ASSERT_EQ(errno, EAGAIN);
    EXPECT_EQ(startAnother(), Place::taken);
    EXPECT_EQ(calls, 1);
}

TEST_F(SingleInstanceTest, AFirstCopyThatDoesNotRespondIsGivenUp) {
    const SingleInstance frozen(unexpectedCall);
    EXPECT_EQ(SingleInstance(unexpectedCall).place(), Place::unanswered);
}

TEST_F(SingleInstanceTest, ASignalDoesNotCutTheWaitForTheFirstShort) {
    static std::atomic<int> handled = 0;
    struct sigaction counting = {};
    counting.sa_handler = [](int) { ++handled; };
    struct sigaction former = {};
    ASSERT_EQ(::sigaction(SIGUSR1, &counting, &former), 0);

    int calls = 0;
    const SingleInstance first([&](const QByteArray&) { ++calls; });
    std::atomic<bool> answered = false;
    std::thread other([&] {
        EXPECT_EQ(SingleInstance(unexpectedCall).place(), Place::taken);
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
    EXPECT_EQ(SingleInstance(unexpectedCall).place(),
              Place::first); // a sanitizer that meets the class needs descriptors
    rlimit former = {};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &former), 0);
    const rlimit none{.rlim_cur = 0, .rlim_max = former.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
    const Place place = SingleInstance(unexpectedCall).place();
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &former), 0);
    EXPECT_EQ(place, Place::first);
}

TEST_F(SingleInstanceTest, ACallThatCannotBeTakenIsTriedAgainAfterAPause) {
    int calls = 0;
    const SingleInstance first([&](const QByteArray&) { ++calls; });
    const FileDescriptor caller = packetSocket();
    const auto address = SocketAddress::ofFile(socket);
    ASSERT_EQ(::connect(caller.get(), address.get(), address.length()), 0);
    ASSERT_EQ(::send(caller.get(), "show ", 5, MSG_NOSIGNAL), 5);

    accepting = {.error = EMFILE, .left = Fault::always};
    constexpr int turns = 40; // of the event loop: the end of a pause is one, too
    for (int turn = 0; turn < turns; ++turn) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_GT(accepting.calls, 1);
    EXPECT_LE(accepting.calls, turns * 3 / 4);

    accepting = {};
    EXPECT_TRUE(QTest::qWaitFor([&] { return calls == 1; }, 60'000));
}

TEST_F(SingleInstanceTest, WithoutARuntimeFolderAPrivateOneIsUsed) {
    const TemporaryFolder shared;
    for (const char* none : {static_cast<const char*>(nullptr), "relative", "/nowhere"}) {
        setRuntimeFolder(none);
        const SingleInstance first(unexpectedCall, {}, shared.path());
        const fs::path own = shared.path() / ("quiverly-" + std::to_string(::geteuid()));
        EXPECT_TRUE(isPrivate(own));
        EXPECT_TRUE(fs::is_socket(own / "quiverly.socket"));
    }
}

TEST_F(SingleInstanceTest, FoldersThatAreOpenToOthersAreNotUsed) {
    const TemporaryFolder shared;
    const fs::path own = shared.addFolder("quiverly-" + std::to_string(::geteuid()));
    fs::permissions(own, fs::perms(0701));
    fs::permissions(folder.path(), fs::perms(0710));
    const SingleInstance first(unexpectedCall, {}, shared.path());
    const SingleInstance second(unexpectedCall, {}, shared.path());
    EXPECT_EQ(first.place(), Place::first);
    EXPECT_EQ(second.place(), Place::first);
    EXPECT_TRUE(fs::is_empty(own));
    EXPECT_TRUE(fs::is_empty(folder.path()));
}

TEST_F(SingleInstanceTest, AnotherUserReachesNeitherTheLockNorTheSocket) {
    if (!another_user::isPossible()) GTEST_SKIP() << "NOT RUN: only root can act as another user";
    const SingleInstance first(unexpectedCall);
    EXPECT_TRUE(fs::exists(folder.path() / "quiverly.lock"));
    another_user::act([&] {
        EXPECT_EQ(::open((folder.path() / "quiverly.lock").c_str(), O_RDONLY), -1);
        EXPECT_EQ(errno, EACCES);
        const auto address = SocketAddress::ofFile(socket);
        EXPECT_EQ(::connect(packetSocket().get(), address.get(), address.length()), -1);
        EXPECT_EQ(errno, EACCES);
    });
}

TEST_F(SingleInstanceTest, WhenTheFirstCopyEndsMeanwhileALaterOneTakesItsPlace) {
    auto first = std::make_unique<SingleInstance>(unexpectedCall);
    Place place{};
    const std::unique_ptr<QThread> other(QThread::create([&] { place = SingleInstance(unexpectedCall).place(); }));
    other->start();
    first.reset();
    ASSERT_TRUE(other->wait(60'000));
    EXPECT_EQ(place, Place::first);
}

} // namespace
} // namespace quiverly
