#include "tools/simulate/InputReport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>

namespace quiverly {
namespace {

std::int32_t axisAt(const InputReport& report, std::size_t offset) {
    std::uint32_t bits = 0;
    for (std::size_t index = 4; index-- > 0;) bits = bits << 8 | report.at(offset + index);
    return static_cast<std::int32_t>(bits);
}

TEST(InputReportTest, HoldsTheAccelerationsBetweenAHeaderAndATailThatAreNotAllZero) {
    for (const std::uint32_t number : {0U, 1U, 0xFFFFFFFFU}) {
        const InputReport report = inputReport({.x = 1.0, .y = -1.0, .z = 0.5}, number);
        EXPECT_EQ(axisAt(report, 6), 65536);
        EXPECT_EQ(axisAt(report, 10), -65536);
        EXPECT_EQ(axisAt(report, 14), 32768);
        EXPECT_TRUE(std::any_of(report.begin(), report.begin() + 6, [](auto byte) { return byte != 0; }));
        EXPECT_TRUE(std::any_of(report.begin() + 18, report.end(), [](auto byte) { return byte != 0; }));
    }
}

TEST(InputReportTest, HoldsTheGreatestAccelerationWhereTheRealOneIsGreater) {
    const InputReport report = inputReport({.x = 1e9, .y = -1e9, .z = 0.0}, 1);
    EXPECT_EQ(axisAt(report, 6), 32767 * 65536);
    EXPECT_EQ(axisAt(report, 10), -32767 * 65536);
}

} // namespace
} // namespace quiverly
