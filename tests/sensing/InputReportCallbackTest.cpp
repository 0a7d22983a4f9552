#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <span>
#include <vector>

#include "platform/virtual/VirtualPlatform.h"
#include "platform/virtual/sensor_report.h"
#include "sensing/AccelerometerReader.h"
#include "support/Sample.h"

namespace quiverly {
namespace {

using Bytes = std::vector<std::uint8_t>;

// What the reader registers with the port: its buffer, its callback, and itself as the callback's context.
class InputReportCallbackTest : public testing::Test {
protected:
    InputReportCallbackTest() {
        platform.registry.connectAccelerometer();
        collect(reader, samples);
    }

    const VirtualRegistry::Registration& registered() { return platform.registry.lastRegistration; }

    void call(void* context, std::uint8_t* report, std::ptrdiff_t length) {
        registered().callback(context, hid::success, nullptr, 0, 0, report, length);
    }

    VirtualPlatform platform;
    std::vector<Sample> samples;
    AccelerometerReader reader;
};

TEST_F(InputReportCallbackTest, TheContextIsTheReaderAndTheBufferHolds256Bytes) {
    ASSERT_TRUE(reader.start());
    EXPECT_EQ(registered().context, &reader);
    EXPECT_EQ(registered().size, 256);
    const Bytes longest = sensorReport(1, 2, 3, 300);
    ASSERT_TRUE(platform.registry.deliver(longest));
    EXPECT_TRUE(std::equal(longest.begin(), longest.begin() + 256, registered().buffer));
}

// A buffer of its own for each start could happen to get the same address, but not the same bytes.
TEST_F(InputReportCallbackTest, TheBufferOfTheFirstStartServesEveryLaterOne) {
    ASSERT_TRUE(reader.start());
    const Bytes longest = sensorReport(1, 2, 3, 256);
    ASSERT_TRUE(platform.registry.deliver(longest));
    const std::uint8_t* const buffer = registered().buffer;
    for (int restart = 0; restart < 3; ++restart) {
        reader.stop();
        platform.threads.turn();
        ASSERT_TRUE(reader.start());
        ASSERT_EQ(registered().buffer, buffer);
        EXPECT_TRUE(std::ranges::equal(longest, std::span(buffer, 256)));
    }
}

TEST_F(InputReportCallbackTest, WithoutAContextItDoesNothing) {
    ASSERT_TRUE(reader.start());
    Bytes report = sensorReport(0, 0, 1);
    for (int count = 0; count < 8; ++count) call(nullptr, report.data(), std::ssize(report));
    EXPECT_TRUE(samples.empty());
}

TEST_F(InputReportCallbackTest, ResultSenderReportTypeAndReportIDAreIgnored) {
    ASSERT_TRUE(reader.start());
    Bytes report = sensorReport(0, 0, 1);
    for (std::uint32_t count = 1; count <= 8; ++count) {
        registered().callback(&reader, hid::noDevice, report.data(), count, ~count, report.data(), 18);
    }
    EXPECT_EQ(samples.size(), 1U);
}

TEST_F(InputReportCallbackTest, TheReportIsReadWhereThePortSaysItIs) {
    ASSERT_TRUE(reader.start());
    Bytes elsewhere = sensorReport(0.5, 0.25, 2);
    for (int count = 0; count < 8; ++count) call(&reader, elsewhere.data(), std::ssize(elsewhere));
    EXPECT_EQ(samples, (std::vector<Sample>{{0.5, 0.25, 2}}));
}

TEST_F(InputReportCallbackTest, LengthsOfZeroAndLessAreCountedAndDropped) {
    ASSERT_TRUE(reader.start());
    for (const std::ptrdiff_t length :
         {std::ptrdiff_t{0}, std::ptrdiff_t{-1}, std::ptrdiff_t{-18}, std::numeric_limits<std::ptrdiff_t>::min()}) {
        for (int count = 0; count < 9; ++count) call(&reader, nullptr, length);
    }
    EXPECT_TRUE(samples.empty());
    Bytes report = sensorReport(0, 0, 1);
    for (int count = 36; count < 39; ++count) call(&reader, report.data(), 18);
    EXPECT_TRUE(samples.empty());
    call(&reader, report.data(), 18); // the fortieth
    EXPECT_EQ(samples.size(), 1U);
}

// Between the stop and the end of its thread a device may still deliver.
TEST_F(InputReportCallbackTest, AReportAfterTheStopIsStillTaken) {
    ASSERT_TRUE(reader.start());
    Bytes report = sensorReport(0, 0, 1);
    for (int count = 0; count < 7; ++count) call(&reader, report.data(), 18);
    reader.stop();
    call(&reader, report.data(), 18);
    EXPECT_EQ(samples.size(), 1U);
}

} // namespace
} // namespace quiverly
