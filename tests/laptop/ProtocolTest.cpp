#include <gtest/gtest.h>

#include <random>

#include "laptop/protocol.h"

namespace quiverly::laptop {
namespace {

std::vector<Message> oneOfEachKind() {
    return {
        ServiceHello{.className = "AppleSPUHIDDevice",
                     .properties = {{"PrimaryUsage", -3}, {"Product", std::string("Accelerometer")}, {"", INT64_MIN}}},
        EndOfServices{},
        PropertyWrite{.service = 255, .key = "ReportInterval", .value = -1000},
        PropertyAnswer{13},
        OpenRequest{7},
        OpenAnswer{INT32_MIN},
        Report{{1, 2, 3}},
    };
}

// The decoder's input lies in a heap buffer of exactly its size, so that reading past its end is noticed.
tl::expected<Message, std::error_code> decodeExactly(std::span<const std::uint8_t> packet) {
    return decode(std::vector<std::uint8_t>(packet.begin(), packet.end()));
}

TEST(ProtocolTest, EveryMessageReadsBackAsItWasSent) {
    for (const Message& message : oneOfEachKind()) {
        const auto packet = encode(message);
        const auto read = decodeExactly(packet);
        ASSERT_TRUE(read);
        EXPECT_EQ(read->index(), message.index());
        EXPECT_EQ(encode(*read), packet);
    }
    const auto hello = decode(encode(oneOfEachKind()[0]));
    ASSERT_TRUE(hello);
    EXPECT_EQ(std::get<ServiceHello>(*hello).className, "AppleSPUHIDDevice");
    EXPECT_EQ(std::get<ServiceHello>(*hello).properties, std::get<ServiceHello>(oneOfEachKind()[0]).properties);
    const auto write = decode(encode(oneOfEachKind()[2]));
    ASSERT_TRUE(write);
    EXPECT_EQ(std::get<PropertyWrite>(*write).service, 255);
    EXPECT_EQ(std::get<PropertyWrite>(*write).key, "ReportInterval");
    EXPECT_EQ(std::get<PropertyWrite>(*write).value, -1000);
}

TEST(ProtocolTest, APacketCutShortIsNotAMessage) {
    for (const Message& message : oneOfEachKind()) {
        const auto packet = encode(message);
        for (std::size_t length = 0; length < packet.size(); ++length) {
            const auto read = decodeExactly(std::span(packet).first(length));
            const bool mayBeShorter =
                std::holds_alternative<ServiceHello>(message) || std::holds_alternative<Report>(message);
            if (!mayBeShorter) {
                EXPECT_FALSE(read) << length;
            }
            if (read) { // a hello of fewer properties, a shorter report
                EXPECT_EQ(encode(*read).size(), length);
            }
        }
    }
}

TEST(ProtocolTest, APacketWithBytesToSpareIsNotAMessage) {
    for (const Message& message : oneOfEachKind()) {
        if (std::holds_alternative<Report>(message)) continue;
        auto packet = encode(message);
        packet.push_back(0);
        EXPECT_FALSE(decodeExactly(packet));
    }
}

TEST(ProtocolTest, APacketOfAnUnknownKindIsNotAMessage) {
    for (int kind = 0; kind < 256; ++kind) {
        if (1 <= kind && kind <= 7) continue;
        const std::vector<std::uint8_t> packet = {static_cast<std::uint8_t>(kind), 0, 0, 0, 0};
        EXPECT_FALSE(decodeExactly(packet)) << kind;
    }
}

TEST(ProtocolTest, AValueOfAnUnknownKindIsNotAMessage) {
    auto packet = encode(ServiceHello{.className = "", .properties = {{"", std::string()}}});
    ASSERT_TRUE(decodeExactly(packet));
    packet[3] = 3;
    EXPECT_FALSE(decodeExactly(packet));
}

TEST(ProtocolTest, AnyBytesAreReadWithoutHarm) {
    std::mt19937 random(1);
    for (int count = 0; count < 20000; ++count) {
        std::vector<std::uint8_t> packet(random() % 40);
        for (auto& byte : packet) byte = static_cast<std::uint8_t>(random());
        if (!packet.empty()) packet[0] = static_cast<std::uint8_t>(random() % 8);
        const auto read = decodeExactly(packet);
        if (read) { // a hello may name a property twice
            EXPECT_LE(encode(*read).size(), packet.size());
        }
    }
}

TEST(ProtocolTest, ATextIsCutTo255Bytes) {
    const auto read = decode(encode(PropertyWrite{.service = 0, .key = std::string(300, 'k'), .value = 1}));
    ASSERT_TRUE(read);
    EXPECT_EQ(std::get<PropertyWrite>(*read).key, std::string(255, 'k'));
}

} // namespace
} // namespace quiverly::laptop
