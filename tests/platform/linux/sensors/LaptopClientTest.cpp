#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <fstream>
#include <thread>

#include "platform/linux/sensors/LaptopClient.h"
#include "sensing/AccelerometerReader.h"
#include "support/AnotherUser.h"
#include "support/FakeLaptop.h"
#include "support/LiveLaptop.h"
#include "support/OpenSensor.h"
#include "support/ProcessResources.h"
#include "support/RuntimeFolder.h"
#include "support/Waiting.h"

namespace quiverly {
namespace {

constexpr char missing[] = "Accelerometer device missing on this Mac.";

std::string openError(int code) {
    return "Need Input Monitoring permission (System Settings → Privacy & Security). Code " + std::to_string(code) +
           ".";
}

// The message of a reader that has tried to start; "listening" when it could.
std::string outcomeOfStart() {
    AccelerometerReader reader;
    if (reader.start()) return "listening";
    return reader.lastOpenError().value_or("no reason");
}

std::string saidByStartAgainst(const FakeLaptop::Serve& serve) {
    const FakeLaptop laptop(serve);
    return outcomeOfStart();
}

TEST(LaptopClientTest, WithoutASocketThereIsNoSensor) {
    const RuntimeFolder folder;
    EXPECT_EQ(outcomeOfStart(), missing);
}

TEST(LaptopClientTest, AStaleSocketIsNotASensor) {
    const RuntimeFolder folder;
    {
        const FileDescriptor dead(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0));
        const auto address = SocketAddress::ofFile(laptop::SocketPlace::ofThisUser().socket());
        ASSERT_EQ(::bind(dead.get(), address.get(), address.length()), 0);
    }
    ASSERT_TRUE(std::filesystem::is_socket(laptop::SocketPlace::ofThisUser().socket()));
    EXPECT_EQ(outcomeOfStart(), missing);
}

TEST(LaptopClientTest, AFileOrFolderInPlaceOfTheSocketIsNotASensor) {
    const RuntimeFolder folder;
    std::ofstream(laptop::SocketPlace::ofThisUser().socket()) << "no socket";
    EXPECT_EQ(outcomeOfStart(), missing);
    std::filesystem::remove(laptop::SocketPlace::ofThisUser().socket());
    std::filesystem::create_directory(laptop::SocketPlace::ofThisUser().socket());
    EXPECT_EQ(outcomeOfStart(), missing);
}

TEST(LaptopClientTest, ARuntimeFolderThatIsMissingHasNoSensor) {
    setRuntimeFolder("/nonexistent");
    EXPECT_EQ(outcomeOfStart(), missing);
}

TEST(LaptopClientTest, InASharedFolderOnlyAFolderOfTheUserIsTrusted) {
    const RuntimeFolder shared;
    setRuntimeFolder(nullptr);
    const laptop::SocketPlace place = laptop::SocketPlace::ofThisUser(shared.path());
    std::filesystem::create_directory(place.folder);
    std::filesystem::permissions(place.folder, std::filesystem::perms::owner_all);
    const FakeLaptop laptop([](int socket) { FakeLaptop::serveByTheRules(socket); }, place);
    EXPECT_TRUE(LaptopClient::connect(place));
    std::filesystem::permissions(place.folder, std::filesystem::perms::all);
    EXPECT_FALSE(LaptopClient::connect(place));
    EXPECT_EQ(laptop.accepted(), 1);
}

TEST(LaptopClientTest, AStreamSocketIsNotASensor) {
    const RuntimeFolder folder;
    const FileDescriptor stream(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const auto address = SocketAddress::ofFile(laptop::SocketPlace::ofThisUser().socket());
    ASSERT_EQ(::bind(stream.get(), address.get(), address.length()), 0);
    ASSERT_EQ(::listen(stream.get(), 1), 0);
    EXPECT_EQ(outcomeOfStart(), missing);
}

TEST(LaptopClientTest, ASilentLaptopIsNotASensorAndIsWaitedForOnce) {
    const RuntimeFolder folder;
    const FakeLaptop laptop(FakeLaptop::waitForTheEnd);
    EXPECT_EQ(outcomeOfStart(), missing);
    EXPECT_EQ(laptop.accepted(), 1);
}

TEST(LaptopClientTest, ALaptopThatWasSilentIsFoundAgainOnceItSpeaks) {
    const RuntimeFolder folder;
    std::atomic<bool> speaks = false;
    const FakeLaptop laptop([&](int socket) {
        if (speaks) FakeLaptop::serveByTheRules(socket);
        FakeLaptop::waitForTheEnd(socket);
    });
    EXPECT_EQ(outcomeOfStart(), missing);
    speaks = true;
    EXPECT_TRUE(waitUntil([] { return outcomeOfStart() == "listening"; }));
}

TEST(LaptopClientTest, ALaptopInThePlaceOfASilentOneIsFoundAtOnce) {
    const RuntimeFolder folder;
    EXPECT_EQ(saidByStartAgainst(FakeLaptop::waitForTheEnd), missing);
    EXPECT_EQ(saidByStartAgainst([](int socket) { FakeLaptop::serveByTheRules(socket); }), "listening");
}

// A laptop that keeps the rules for so many messages, counted over all its connections, and from then on says something
// else. A whole start takes thirteen: a hello each for driver and device and the end of the list, on each of two
// connections; three properties on the first; the open and three properties on the second.
struct Breach {
    const char* name;
    std::function<void(int socket)> commit;
};

const std::vector<Breach>& breaches() {
    using Bytes = std::vector<std::uint8_t>;
    const auto says = [](const Bytes& bytes) {
        return [bytes](int socket) {
            FakeLaptop::sendBytes(socket, bytes);
            FakeLaptop::waitForTheEnd(socket);
        };
    };
    static const std::vector<Breach> all = {
        {"closes", [](int) {}},
        {"an empty packet", says({})},
        {"garbage", says(Bytes(300, 0xEE))},
        {"half a message", says({1, 17, 'A', 'p'})},
        {"an oversize packet", says(Bytes(100000, 1))},
        {"a report", says(Bytes(23, laptop::reportMark))},
        {"a question", says({5, 0})},
    };
    return all;
}

std::string expectedAfter(int messages) {
    if (messages < 9) return missing;
    return messages == 9 ? openError(hid::noDevice) : "listening";
}

TEST(LaptopClientTest, ALaptopThatBreaksTheRulesAtAnyPointDoesNoHarm) {
    const RuntimeFolder folder;
    std::thread([] {}).join(); // a thread sanitizer adds a thread of its own to the first
    const auto before = ProcessResources::now();
    for (const Breach& breach : breaches()) {
        for (int messages = 0; messages <= 13; ++messages) {
            std::atomic<int> left = messages;
            const auto outcome = saidByStartAgainst([&](int socket) {
                FakeLaptop::serveByTheRules(socket, [&](const auto& message) {
                    return left-- > 0 && laptop::send(socket, message).has_value();
                });
                breach.commit(socket);
            });
            EXPECT_EQ(outcome, expectedAfter(messages)) << breach.name << " after " << messages << " messages";
        }
    }
    waitUntil([&] { return ProcessResources::now() == before; });
}

TEST(LaptopClientTest, ALaptopThatFallsSilentAtAnyPointIsWaitedForOnce) {
    for (int messages = 0; messages < 13; ++messages) {
        const RuntimeFolder folder;
        std::atomic<int> left = messages;
        const FakeLaptop laptop([&](int socket) {
            FakeLaptop::serveByTheRules(
                socket, [&](const auto& message) { return left-- > 0 && laptop::send(socket, message).has_value(); });
            FakeLaptop::waitForTheEnd(socket);
        });
        const auto outcome = outcomeOfStart();
        EXPECT_EQ(outcome, expectedAfter(messages)) << messages;
        EXPECT_EQ(laptop.accepted(), messages < 6 ? 1 : 2) << messages;
    }
}

TEST(LaptopClientTest, ALaptopThatFallsSilentOnceItIsOpenHearsTheWakingWhenItSpeaksAgain) {
    for (int messages = 10; messages < 13; ++messages) {
        const RuntimeFolder folder;
        std::atomic<int> left = messages;
        std::atomic<bool> speaksAgain = false;
        std::atomic<int> written = 0;
        const FakeLaptop laptop([&](int socket) {
            FakeLaptop::serveByTheRules(socket, [&](const laptop::Message& message) {
                if (left-- <= 0) waitUntil([&] { return speaksAgain.load(); });
                if (std::holds_alternative<laptop::PropertyAnswer>(message)) ++written;
                return laptop::send(socket, message).has_value();
            });
        });
        AccelerometerReader reader;
        EXPECT_TRUE(reader.start()) << messages;
        speaksAgain = true;
        EXPECT_TRUE(waitUntil([&] { return written == 6; })) << messages; // three before the opening, three after it
    }
}

TEST(LaptopClientTest, ALaptopThatNeverEndsItsListIsNotASensor) {
    const RuntimeFolder folder;
    EXPECT_EQ(saidByStartAgainst([](int socket) {
                  const auto hello =
                      laptop::encode(laptop::ServiceHello{.className = "AppleSPUHIDDriver", .properties = {}});
                  while (::send(socket, hello.data(), hello.size(), MSG_NOSIGNAL) >= 0) {
                  }
              }),
              missing);
}

TEST(LaptopClientTest, ErrorsOfOpeningBecomeTheSystemsReturnCodes) {
    const std::pair<int, int> codes[] = {{EACCES, -536870174}, {EPERM, -536870174}, {EBUSY, -536870203},
                                         {ENODEV, -536870208}, {EIO, -536870212},   {-1, -536870212}};
    for (const auto& [error, code] : codes) {
        const RuntimeFolder folder;
        EXPECT_EQ(saidByStartAgainst([error = error](int socket) {
                      FakeLaptop::serveByTheRules(socket, [&](const laptop::Message& message) {
                          const bool opening = std::holds_alternative<laptop::OpenAnswer>(message);
                          return laptop::send(socket, opening ? laptop::OpenAnswer{error} : message).has_value();
                      });
                  }),
                  openError(code));
    }
}

// A laptop that keeps the rules and, asked to open its sensor, sends these packets as well.
FakeLaptop::Serve reporting(const std::vector<std::vector<std::uint8_t>>& packets) {
    return [packets](int socket) {
        FakeLaptop::serveByTheRules(socket, [&](const laptop::Message& message) {
            if (!laptop::send(socket, message)) return false;
            if (!std::holds_alternative<laptop::OpenAnswer>(message)) return true;
            for (const auto& packet : packets) FakeLaptop::sendBytes(socket, packet);
            return true;
        });
    };
}

TEST(LaptopClientTest, ReportsOfEveryLengthArriveCutToTheBuffer) {
    const RuntimeFolder folder;
    std::vector<std::vector<std::uint8_t>> packets;
    for (std::size_t length = 0; length <= 300; ++length) {
        packets.emplace_back(1 + length, static_cast<std::uint8_t>(length));
        packets.back()[0] = laptop::reportMark;
    }
    const FakeLaptop laptop(reporting(packets));
    OpenSensor sensor;
    ASSERT_EQ(sensor.opened, hid::success);
    ASSERT_TRUE(waitUntil([&] {
        hid::runLoop(0.25);
        return sensor.reports.size() == packets.size();
    }));
    for (std::size_t length = 0; length < packets.size(); ++length) {
        const std::vector<std::uint8_t> expected(std::min<std::size_t>(length, 256), static_cast<std::uint8_t>(length));
        EXPECT_EQ(sensor.reports[length], expected) << length;
    }
}

TEST(LaptopClientTest, OtherMessagesAmongReportsAreDropped) {
    const RuntimeFolder folder;
    const FakeLaptop laptop(reporting({{laptop::reportMark, 1}, {6, 0, 0, 0, 0}, {0xEE}, {laptop::reportMark, 2}}));
    OpenSensor sensor;
    ASSERT_EQ(sensor.opened, hid::success);
    waitUntil([&] {
        hid::runLoop(0.25);
        return sensor.reports.size() == 2;
    });
    EXPECT_EQ(sensor.reports, (std::vector<std::vector<std::uint8_t>>{{1}, {2}}));
}

TEST(LaptopClientTest, DescriptorsThatAPeerHandsOverAreNotKept) {
    const RuntimeFolder folder;
    const FakeLaptop laptop([](int socket) {
        FakeLaptop::serveByTheRules(socket, [&](const laptop::Message& message) {
            auto bytes = laptop::encode(message);
            iovec part{.iov_base = bytes.data(), .iov_len = bytes.size()};
            alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control = {};
            msghdr packet = {};
            packet.msg_iov = &part;
            packet.msg_iovlen = 1;
            packet.msg_control = control.data();
            packet.msg_controllen = control.size();
            cmsghdr* passed = CMSG_FIRSTHDR(&packet);
            passed->cmsg_level = SOL_SOCKET;
            passed->cmsg_type = SCM_RIGHTS;
            passed->cmsg_len = CMSG_LEN(sizeof(int));
            std::memcpy(CMSG_DATA(passed), &socket, sizeof socket);
            return ::sendmsg(socket, &packet, MSG_NOSIGNAL) >= 0;
        });
    });
    const auto before = ProcessResources::now();
    EXPECT_EQ(outcomeOfStart(), "listening");
    EXPECT_TRUE(waitUntil([&] { return ProcessResources::now().descriptors <= before.descriptors + 3; }));
}

// A living laptop that other users reach as far as the system is concerned.
class OpenToAll : public LiveLaptop {
public:
    OpenToAll() {
        for (const auto& path : {folder(), laptop::SocketPlace::ofThisUser().socket()}) {
            std::filesystem::permissions(path, std::filesystem::perms::all);
        }
    }
};

TEST(LaptopClientTest, ALaptopOfAnotherUserIsNotASensor) {
    if (!another_user::isPossible()) GTEST_SKIP() << "NOT RUN: only root can act as another user";
    const OpenToAll laptop;
    EXPECT_EQ(outcomeOfStart(), "listening");
    another_user::act([] { EXPECT_EQ(LaptopClient::connect(), nullptr); });
}

TEST(LaptopClientTest, AnotherUserLearnsNothingFromTheLaptop) {
    if (!another_user::isPossible()) GTEST_SKIP() << "NOT RUN: only root can act as another user";
    const OpenToAll laptop;
    another_user::act([] {
        const FileDescriptor socket(::socket(AF_UNIX, SOCK_SEQPACKET, 0));
        const auto address = SocketAddress::ofFile(laptop::SocketPlace::ofThisUser().socket());
        ASSERT_EQ(::connect(socket.get(), address.get(), address.length()), 0);
        char byte = 0;
        EXPECT_LE(::recv(socket.get(), &byte, 1, 0), 0);
    });
    EXPECT_EQ(outcomeOfStart(), "listening");
}

} // namespace
} // namespace quiverly
