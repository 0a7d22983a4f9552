#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <random>
#include <span>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/virtual/VirtualPlatform.h"
#include "platform/virtual/sensor_report.h"
#include "sensing/AccelerometerReader.h"
#include "support/Sample.h"

namespace quiverly {
namespace {

static_assert(!std::is_polymorphic_v<AccelerometerReader>);

using Bytes = std::vector<std::uint8_t>;

// A reader that listens, and reports as they come from its device.
class AccelerometerReportTest : public testing::Test {
protected:
    AccelerometerReportTest() {
        platform.registry.connectAccelerometer();
        collect(reader, samples);
        EXPECT_TRUE(reader.start());
    }

    void receive(const Bytes& report) { ASSERT_TRUE(platform.registry.deliver(report)); }

    // Seven reports that are counted only, then this one.
    void receiveAsEighth(const Bytes& eighth) {
        for (int count = 0; count < 7; ++count) receive(atRest);
        receive(eighth);
    }

    const Bytes atRest = sensorReport(0, 0, 1);
    VirtualPlatform platform;
    std::vector<Sample> samples;
    AccelerometerReader reader;
};

TEST_F(AccelerometerReportTest, TheFirstSevenReportsYieldNothingAndTheEighthTheFirstSample) {
    for (int count = 0; count < 7; ++count) receive(atRest);
    EXPECT_TRUE(samples.empty());
    receive(atRest);
    EXPECT_EQ(samples, (std::vector<Sample>{{0, 0, 1}}));
}

TEST_F(AccelerometerReportTest, OneReportInEightBecomesASample) {
    for (int number = 1; number <= 31; ++number) receive(sensorReport(number, 0, 0));
    EXPECT_EQ(samples, (std::vector<Sample>{{8, 0, 0}, {16, 0, 0}, {24, 0, 0}}));
}

TEST_F(AccelerometerReportTest, AnEighteenByteReportIsDecoded) {
    receiveAsEighth(sensorReport(0.5, -0.25, 2, 18));
    EXPECT_EQ(samples, (std::vector<Sample>{{0.5, -0.25, 2}}));
}

TEST_F(AccelerometerReportTest, ASeventeenByteReportUsesUpItsTurnAndTheNextSampleComesEightReportsLater) {
    receiveAsEighth(sensorReport(0, 0, 1, 17));
    for (int count = 0; count < 7; ++count) receive(atRest);
    EXPECT_TRUE(samples.empty());
    receive(atRest);
    EXPECT_EQ(samples.size(), 1U);
}

TEST_F(AccelerometerReportTest, AxesAreLittleEndianAtOffsetsSixTenAndFourteen) {
    receiveAsEighth({9, 9, 9, 9, 9, 9, 0x00, 0x00, 0x01, 0x00, 0, 0, 0, 0, 0, 0, 0, 0});
    receiveAsEighth({9, 9, 9, 9, 9, 9, 0x00, 0x00, 0xFF, 0xFF, 0, 0, 0, 0, 0, 0, 0, 0});
    receiveAsEighth({9, 9, 9, 9, 9, 9, 0x01, 0x80, 0x02, 0x00, 0x03, 0x00, 0xFE, 0xFF, 0xFF, 0xFF, 0x04, 0x00});
    EXPECT_EQ(samples, (std::vector<Sample>{
                           {1, 0, 0},
                           {-1, 0, 0},
                           {0x28001 / 65536.0, (0x3 - 0x20000) / 65536.0, 0x4FFFF / 65536.0},
                       }));
}

TEST_F(AccelerometerReportTest, HeaderAndTailMeanNothing) {
    for (const std::uint8_t filler : Bytes{0x00, 0x7F, 0xFF}) {
        Bytes bytes = sensorReport(0, 0, 1, 256);
        std::fill_n(bytes.begin(), 6, filler);
        std::fill(bytes.begin() + 18, bytes.end(), filler);
        receiveAsEighth(bytes);
    }
    EXPECT_EQ(samples, (std::vector<Sample>(3, {0, 0, 1})));
}

TEST_F(AccelerometerReportTest, AllZeroAccelerationIsDropped) {
    receiveAsEighth(rawSensorReport(0, 0, 0));
    EXPECT_TRUE(samples.empty());
}

// Raw values cannot give a magnitude of 0.2 to the bit; these are the nearest sums of squares on either side.
TEST_F(AccelerometerReportTest, AMagnitudeOfPointTwoIsDroppedAndTheNextAboveItPasses) {
    receiveAsEighth(rawSensorReport(13107, 61, 39)); // 0.1999999995
    EXPECT_TRUE(samples.empty());
    receiveAsEighth(rawSensorReport(13104, 280, 74)); // 0.2000000001
    EXPECT_EQ(samples.size(), 1U);
    receiveAsEighth(rawSensorReport(13096, 412, 352)); // 0.2000001
    EXPECT_EQ(samples.size(), 2U);
}

TEST_F(AccelerometerReportTest, AMagnitudeOfExactlyTwentyFiveIsDroppedAndTheNextBelowItPasses) {
    receiveAsEighth(rawSensorReport(25 * 65536, 0, 0));
    receiveAsEighth(rawSensorReport(0, 0, -25 * 65536));
    receiveAsEighth(rawSensorReport(0, 25 * 65536, 1));
    EXPECT_TRUE(samples.empty());
    receiveAsEighth(rawSensorReport(1638399, 646, 1691)); // 24.99999999999
    EXPECT_EQ(samples.size(), 1U);
    receiveAsEighth(sensorReport(24.9999, 0, 0));
    EXPECT_EQ(samples.size(), 2U);
}

TEST_F(AccelerometerReportTest, TheLargestRawValuesAreDropped) {
    constexpr auto least = std::numeric_limits<std::int32_t>::min();
    constexpr auto most = std::numeric_limits<std::int32_t>::max();
    receiveAsEighth(rawSensorReport(least, least, least));
    receiveAsEighth(rawSensorReport(most, most, most));
    EXPECT_TRUE(samples.empty());
}

TEST_F(AccelerometerReportTest, ADeviceAtRestPasses) {
    receiveAsEighth(sensorReport(0.6, 0, -0.8));
    ASSERT_EQ(samples.size(), 1U);
    EXPECT_NEAR(std::hypot(samples[0].x, samples[0].y, samples[0].z), 1.0, 1e-5);
}

TEST_F(AccelerometerReportTest, WithoutAReceiverReportsAreCountedAndNothingElseHappens) {
    reader.onSample = nullptr;
    for (int count = 0; count < 12; ++count) receive(atRest);
    EXPECT_TRUE(samples.empty());

    collect(reader, samples);
    for (int count = 12; count < 15; ++count) receive(atRest);
    EXPECT_TRUE(samples.empty());
    receive(atRest); // the sixteenth
    EXPECT_EQ(samples.size(), 1U);
}

TEST_F(AccelerometerReportTest, AReplacedReceiverGetsTheNextSample) {
    receiveAsEighth(atRest);
    std::vector<Sample> later;
    collect(reader, later);
    receiveAsEighth(atRest);
    EXPECT_EQ(samples.size(), 1U);
    EXPECT_EQ(later.size(), 1U);
}

TEST_F(AccelerometerReportTest, AReceiverMayReplaceItselfInsideItsOwnCall) {
    auto held = std::make_shared<int>(1);
    const std::weak_ptr<int> receiverLives = held;
    reader.onSample = [&, held = std::move(held)](double, double, double) {
        const auto& lives = receiverLives; // what is read after the replacement must not stand in the receiver
        collect(reader, samples);
        EXPECT_FALSE(lives.expired());
    };
    receiveAsEighth(atRest);
    EXPECT_TRUE(samples.empty());
    EXPECT_TRUE(receiverLives.expired());
    receiveAsEighth(atRest);
    EXPECT_EQ(samples.size(), 1U);
}

// No report can ask readInt32LE() for what these tests ask of it, so they call it themselves. It is private: an
// explicit instantiation is where the language lets a private member be named from outside.

using ReadInt32LE = std::int32_t (*)(std::span<const std::uint8_t> bytes, std::ptrdiff_t offset);
ReadInt32LE privateReadInt32LE();

template<ReadInt32LE function>
struct Reveal {
    friend ReadInt32LE privateReadInt32LE() { return function; }
};
template struct Reveal<&AccelerometerReader::readInt32LE>;

std::int32_t readInt32LE(std::span<const std::uint8_t> bytes, std::ptrdiff_t offset) {
    return privateReadInt32LE()(bytes, offset);
}

TEST(ReadInt32LETest, ReadingPastTheEndYieldsZero) {
    const Bytes bytes = rawSensorReport(1, 2, -3, 18);
    EXPECT_EQ(readInt32LE(bytes, 14), -3);
    EXPECT_EQ(readInt32LE(std::span(bytes).first(17), 14), 0);
    EXPECT_EQ(readInt32LE(std::span(bytes).first(14), 14), 0);
    EXPECT_EQ(readInt32LE({}, 6), 0);
    EXPECT_EQ(readInt32LE(bytes, std::numeric_limits<std::ptrdiff_t>::max()), 0);
}

TEST(ReadInt32LETest, RawValuesAreTwosComplement) {
    EXPECT_EQ(readInt32LE(Bytes{0x00, 0x00, 0x00, 0x80}, 0), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(readInt32LE(Bytes{0xFF, 0xFF, 0xFF, 0x7F}, 0), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(readInt32LE(Bytes{0xFF, 0xFF, 0xFF, 0xFF}, 0), -1);
    EXPECT_EQ(readInt32LE(Bytes{0x01, 0x02, 0x03, 0x04}, 0), 0x04030201);
}

TEST(ReadInt32LEDeathTest, ANegativeOffsetIsFatal) {
    const Bytes bytes(18);
    EXPECT_DEATH(readInt32LE(bytes, -1), "");
}

// Decodes reports the plain way. The gate is one on whole numbers: for raw sums of squares, 0.2 < magnitude < 25.
class ReportModel {
public:
    std::optional<Sample> receive(const Bytes& report) {
        if (++received % 8 != 0 || report.size() < 18) return std::nullopt;
        const std::int64_t x = axis(report, 6);
        const std::int64_t y = axis(report, 10);
        const std::int64_t z = axis(report, 14);
        const std::uint64_t squares = square(x) + square(y) + square(z);
        if (squares <= 171798691 || squares >= 2684354560000) return std::nullopt;
        return Sample{std::ldexp(x, -16), std::ldexp(y, -16), std::ldexp(z, -16)};
    }

private:
    static std::int64_t axis(const Bytes& report, std::size_t offset) {
        std::int64_t value = 0;
        for (std::size_t index = 4; index-- > 0;) value = value * 256 + report[offset + index];
        return value < 2147483648 ? value : value - 4294967296;
    }
    static std::uint64_t square(std::int64_t value) { return static_cast<std::uint64_t>(value * value); }

    std::int64_t received = 0;
};

class AccelerometerReportModelTest : public AccelerometerReportTest {
protected:
    // The sample that the reader delivers for this report, if any.
    std::optional<Sample> answerTo(const Bytes& report) {
        samples.clear();
        receive(report);
        EXPECT_LE(samples.size(), 1U);
        return samples.empty() ? std::nullopt : std::optional(samples.front());
    }

    Bytes randomBytes(std::size_t length) {
        Bytes bytes(length);
        for (auto& byte : bytes) byte = static_cast<std::uint8_t>(generator());
        return bytes;
    }

    // Anything from almost nothing to far too much, so that a good part passes the gate.
    std::int32_t randomAxis() {
        return static_cast<std::int32_t>(static_cast<std::uint32_t>(generator())) >> (generator() % 32);
    }

    std::mt19937_64 generator{20};
    ReportModel model;
};

TEST_F(AccelerometerReportModelTest, ReportsOfEveryLengthAndContentAreDecodedAlike) {
    for (std::size_t length = 0; length <= 256; ++length) {
        int delivered = 0;
        for (int number = 0; number < 8 * 64; ++number) {
            Bytes bytes = randomBytes(length);
            const Bytes axes = rawSensorReport(randomAxis(), randomAxis(), randomAxis());
            if (number % 16 > 7 && length >= 18) std::copy(axes.begin() + 6, axes.end(), bytes.begin() + 6);
            const auto expected = model.receive(bytes);
            ASSERT_EQ(answerTo(bytes), expected) << "length " << length;
            delivered += expected ? 1 : 0;
        }
        EXPECT_EQ(delivered > 0, length >= 18) << "length " << length;
    }
}

TEST_F(AccelerometerReportModelTest, RandomAccelerationsAreDecodedAlike) {
    int delivered = 0;
    for (int number = 0; number < 400'000; ++number) {
        const Bytes bytes = rawSensorReport(randomAxis(), randomAxis(), randomAxis(), 16 + generator() % 8);
        const auto expected = model.receive(bytes);
        ASSERT_EQ(answerTo(bytes), expected) << "report " << number;
        delivered += expected ? 1 : 0;
    }
    EXPECT_GT(delivered, 5'000);
}

} // namespace
} // namespace quiverly
