#include <gtest/gtest.h>

#include <type_traits>

#include "detection/SlapDetector.h"
#include "platform/virtual/VirtualPlatform.h"

namespace quiverly {
namespace {

static_assert(!std::is_polymorphic_v<SlapDetector>);

class SlapDetectorTest : public testing::Test {
protected:
    void SetUp() override {
        detector.onSlap = [this](double amplitude) { amplitudes.push_back(amplitude); };
    }

    VirtualPlatform platform;
    SlapDetector detector;
    std::vector<double> amplitudes;
};

TEST_F(SlapDetectorTest, TheFirstSampleAtRestFiresWithAnAmplitudeOfAboutOne) {
    detector.process(0, 0, 1.0);
    ASSERT_EQ(amplitudes.size(), 1U);
    EXPECT_EQ(amplitudes[0], 1.0);
}

} // namespace
} // namespace quiverly
