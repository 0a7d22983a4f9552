#include "platform/linux/SensorPage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/Environment.h"
#include "support/FakeSystem.h"
#include "support/TemporaryFolder.h"

namespace quiverly {
namespace {

using testing::HasSubstr;
using Cause = SensorTrouble::Cause;

constexpr char shipped[] = "<main>\n<!-- this machine -->\n</main>\n";

// Without a simulated laptop.
class SensorPageTest : public testing::Test {
protected:
    SensorPageTest() { setVariable("XDG_RUNTIME_DIR", home.path().c_str()); }

    std::string page() const { return sensorPage(shipped, findSensorTroubles(system.path())); }

    const TemporaryFolder home;
    const FakeSystem system;
};

TEST_F(SensorPageTest, SaysThatThereIsNoSensor) {
    EXPECT_EQ(page(), "<main>\n"
                      "<section>\n"
                      "  <h2>This machine has no sensor that Linux can read</h2>\n"
                      "  <p>Linux has no driver for an accelerometer in it, or there is none inside.</p>\n"
                      "</section>\n"
                      "\n</main>\n");
}

TEST_F(SensorPageTest, SaysWhichSensorIsTooSlowAndWhy) {
    system.addAccelerometer(0, "st-accel-i2c");
    EXPECT_THAT(page(), HasSubstr("<h2>This machine has a sensor that is too slow</h2>\n"
                                  "  <dl>\n"
                                  "    <dt>kxcj9, driver st-accel-i2c, 0.000977 g a step</dt>\n"
                                  "    <dd>It is powered up anew for each value, which takes too long: it gives 11 to "
                                  "19 readings a second.</dd>\n"
                                  "  </dl>\n"));
}

TEST_F(SensorPageTest, SaysThatASensorIsTooCoarse) {
    system.set(system.addAccelerometer() / "in_accel_scale", "0.4612800000");
    EXPECT_THAT(page(), HasSubstr("a sensor that is of no use for this</h2>"));
    EXPECT_THAT(page(), HasSubstr("<dd>It measures in steps of 0.047 g, which is more than a soft slap.</dd>"));
}

TEST_F(SensorPageTest, SaysThatASensorWhichOpensNowIsToBeTriedAgain) {
    system.addAccelerometer();
    EXPECT_THAT(page(), HasSubstr("a sensor that answers again</h2>"));
    EXPECT_THAT(page(), HasSubstr("<dd>It answers now: try again.</dd>"));
}

TEST_F(SensorPageTest, SaysWhatTheSystemSaysOfASensorThatGivesNoNumber) {
    system.set(system.addAccelerometer() / "in_accel_z_raw", "not a number");
    EXPECT_THAT(page(), HasSubstr("a sensor that does not answer</h2>"));
    EXPECT_THAT(page(), HasSubstr("<dd>It did not answer: Bad message.</dd>"));
}

TEST_F(SensorPageTest, ListsAllSensorsTheMostUsefulOneFirst) {
    system.addAccelerometer(0, "st-accel-i2c");
    system.addAccelerometer(1, "kxcjk1013", "i2c/1-000e");
    const auto troubles = findSensorTroubles(system.path());
    ASSERT_EQ(troubles.size(), 2U);
    EXPECT_EQ(troubles.front().cause, Cause::none);
    EXPECT_EQ(troubles.back().cause, Cause::tooSlow);
}

TEST_F(SensorPageTest, NamesEachCauseInItsHeading) {
    const auto headingOf = [](Cause cause) { return sensorPage(shipped, {{.cause = cause}}); };
    EXPECT_THAT(headingOf(Cause::notPermitted), HasSubstr("This machine has a sensor that you may not read"));
    EXPECT_THAT(headingOf(Cause::busy), HasSubstr("This machine has a sensor that is busy"));
}

TEST_F(SensorPageTest, ShowsNamesAsTextWhateverTheyHold) {
    system.set(system.addAccelerometer() / "name", "<script>\"&'</script>");
    EXPECT_THAT(page(), HasSubstr("<dt>&lt;script&gt;&quot;&amp;"));
}

TEST_F(SensorPageTest, LeavesAPageAloneThatHasNoPlaceForIt) {
    EXPECT_EQ(sensorPage("<p>My own page</p>", {}), "<p>My own page</p>");
    EXPECT_EQ(sensorPage("", {}), "");
}

} // namespace
} // namespace quiverly
