#include "tools/simulate/window/ApplicationDetector.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/FeltMotion.h"
#include "tools/simulate/InputReport.h"

namespace quiverly {
namespace {

class ApplicationDetectorTest : public testing::Test {
protected:
    ApplicationDetectorTest() {
        detector.onReading = [this](const Reading& reading, bool) { readings.push_back(reading); };
        detector.onSlap = [this](double, double amplitude) { slaps.push_back(amplitude); };
        detector.begin(1);
    }

    // So many reports of the laptop's motion.
    void feel(int reports) {
        for (int count = 0; count < reports; ++count) detector.feel(++millisecond, inputReport(motion.next(), 0));
    }

    VirtualPlatform platform;
    ApplicationDetector detector{platform};
    Motion motion{3};
    std::int64_t millisecond = 0;
    std::vector<Reading> readings;
    std::vector<double> slaps;
};

// What the application has, fed with the same motion.
std::vector<double> slapsInTheApplication() {
    FeltMotion felt(3);
    for (const double peak : {0.0, 0.6, 0.1, 0.25}) {
        if (peak > 0) felt.motion.slap({.peak = peak});
        felt.feel(1003);
    }
    return felt.slaps;
}

TEST(ApplicationDetectorsTest, AmplitudesAreThoseOfTheApplicationToTheBit) {
    const auto wanted = slapsInTheApplication();
    ASSERT_EQ(wanted.size(), 3U); // the first sample is one
    VirtualPlatform platform;
    ApplicationDetector detector(platform);
    Motion motion(3);
    std::vector<double> slaps;
    detector.onSlap = [&](double, double amplitude) { slaps.push_back(amplitude); };
    detector.begin(4711);
    std::int64_t millisecond = 100'000;
    for (const double peak : {0.0, 0.6, 0.1, 0.25}) {
        if (peak > 0) motion.slap({.peak = peak});
        for (int count = 0; count < 1003; ++count) detector.feel(++millisecond, inputReport(motion.next(), 0));
    }
    EXPECT_EQ(slaps, wanted);
}

TEST_F(ApplicationDetectorTest, OneReportInEightIsAReading) {
    feel(7);
    EXPECT_TRUE(readings.empty());
    feel(1);
    ASSERT_EQ(readings.size(), 1U);
    EXPECT_EQ(readings[0].seconds, 0.008);
    EXPECT_NEAR(readings[0].magnitude, 1.0, 0.01);
    EXPECT_NEAR(readings[0].score, 1.0, 0.01); // nothing was felt before
    EXPECT_EQ(readings[0].threshold, 0.12);
    feel(8);
    ASSERT_EQ(readings.size(), 2U);
    EXPECT_LT(readings[1].score, 0.01);
}

TEST_F(ApplicationDetectorTest, MissedReportsAreCountedAsTheApplicationCountsThem) {
    feel(3);
    detector.miss(8'000'004);
    feel(1);
    EXPECT_EQ(readings.size(), 1U);
}

TEST_F(ApplicationDetectorTest, AnotherProcessBeginsAnewAndTheSameOneDoesNot) {
    feel(1001);
    detector.begin(1);
    feel(7);
    EXPECT_EQ(slaps.size(), 1U);
    EXPECT_EQ(readings.size(), 126U);
    detector.begin(2);
    feel(7);
    EXPECT_EQ(readings.size(), 126U);
    feel(1);
    EXPECT_EQ(readings.size(), 127U);
    EXPECT_EQ(slaps.size(), 2U); // its first sample
}

TEST_F(ApplicationDetectorTest, TheThresholdHoldsForTheProcessAfterThisOneToo) {
    detector.setThreshold(0.5);
    for (const std::int64_t process : {1, 2}) {
        detector.begin(process);
        feel(1000);
        slaps.clear();
        motion.slap({.peak = 0.4});
        feel(1000);
        EXPECT_TRUE(slaps.empty());
        motion.slap({.peak = 0.55});
        feel(1000);
        EXPECT_EQ(slaps.size(), 1U);
        EXPECT_EQ(readings.back().threshold, 0.5);
    }
}

} // namespace
} // namespace quiverly
