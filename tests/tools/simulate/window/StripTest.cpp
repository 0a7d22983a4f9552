#include "tools/simulate/window/Strip.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include <QApplication>

#include "support/Paintings.h"
#include "support/Screen.h"
#include "ui/Theme.h"

namespace quiverly {
namespace {

class StripTest : public testing::Test {
protected:
    StripTest() {
        strip.resize(500, 190);
        strip.show();
        QApplication::processEvents();
    }
    ~StripTest() override { Theme::current().prefer({}); }

    // Readings of a magnitude for so long, painted one by one.
    void feel(double duration, double magnitude = 1.0) {
        for (const double end = seconds + duration; seconds < end; seconds += 0.008) {
            strip.addReading({.seconds = seconds,
                              .magnitude = magnitude,
                              .baseline = 1.0,
                              .score = std::abs(magnitude - 1.0),
                              .threshold = 0.12},
                             false);
            QApplication::processEvents();
        }
    }

    Strip strip;
    Paintings paintings{strip};
    double seconds = 20.0;
};

TEST_F(StripTest, TheNoiseOfALaptopAtRestIsNotDrawnAnew) {
    feel(9.0, 1.003);
    paintings.count = 0;
    feel(5.0, 1.003);
    EXPECT_EQ(paintings.count, 0);
    feel(0.016, 1.2);
    EXPECT_GT(paintings.count, 0);
}

TEST_F(StripTest, ItRunsUntilTheLastMotionIsOutOfSight) {
    feel(0.016, 1.2);
    feel(7.5);
    paintings.count = 0;
    feel(0.3);
    EXPECT_GT(paintings.count, 10);
    feel(1.0);
    const QImage without = strip.grab().toImage();
    paintings.count = 0;
    feel(1.0);
    EXPECT_EQ(paintings.count, 0);
    EXPECT_FALSE(hasColor(without, Theme::primaryPink));
}

TEST_F(StripTest, ASlapIsMarkedAndDescribedWithItsAmplitudeWhileItIsInSight) {
    feel(1.0);
    EXPECT_EQ(accessibleText(strip, QAccessible::Description), "No slap");
    strip.addSlap({.seconds = seconds, .amplitude = 0.6117});
    strip.addSlap({.seconds = seconds + 1, .amplitude = 0.3});
    feel(2.0);
    EXPECT_EQ(accessibleText(strip, QAccessible::Description), "Slaps: 0.612g, 0.300g");
    EXPECT_TRUE(hasColor(strip.grab().toImage(), Theme::primaryPink));
    feel(6.5);
    EXPECT_EQ(accessibleText(strip, QAccessible::Description), "Slaps: 0.300g");
    feel(2.0);
    EXPECT_EQ(accessibleText(strip, QAccessible::Description), "No slap");
    EXPECT_FALSE(hasColor(strip.grab().toImage(), Theme::primaryPink));
}

TEST_F(StripTest, ItLooksLikeThePlotsOfRecordings) {
    feel(2.0, 1.5);
    const QImage light = strip.grab().toImage();
    EXPECT_TRUE(hasColor(light, QColor("#ffffff")));
    Theme::current().prefer({.dark = true});
    EXPECT_TRUE(hasColor(strip.grab().toImage(), QColor("#232323")));
    Theme::current().prefer({.dark = false, .highContrast = true});
    EXPECT_TRUE(hasColor(strip.grab().toImage(), Qt::black));
}

// Whether a column of the picture has a pixel much like the colour.
bool hasLine(const QImage& picture, int x, const QColor& color) {
    for (int y = 0; y < picture.height() / picture.devicePixelRatio(); ++y) {
        const QColor seen = colorAt(picture, {x, y});
        const int difference = std::max({std::abs(seen.red() - color.red()), std::abs(seen.green() - color.green()),
                                         std::abs(seen.blue() - color.blue())});
        if (difference < 50) return true;
    }
    return false;
}

TEST_F(StripTest, LinesRunThroughAllReadings) {
    Theme::current().prefer({.dark = false});
    feel(9.0);
    const QColor baseline("#0a6fb8");
    const QImage flat = strip.grab().toImage();
    for (const int x : {40, 150, 300, 480}) EXPECT_TRUE(hasLine(flat, x, baseline)) << x;
    feel(0.008, 1.5);
    feel(3.0);
    const QImage spike = strip.grab().toImage();
    EXPECT_NE(spike.copy(spike.width() / 2, 0, spike.width() / 4, spike.height()),
              flat.copy(flat.width() / 2, 0, flat.width() / 4, flat.height()));
    for (const int x : {40, 150, 300, 480}) EXPECT_TRUE(hasLine(spike, x, baseline)) << x;
}

TEST_F(StripTest, AnotherThresholdIsShownAtOnce) {
    feel(1.0);
    const QImage before = strip.grab().toImage();
    paintings.count = 0;
    strip.setThreshold(0.4);
    QApplication::processEvents();
    EXPECT_GT(paintings.count, 0);
    EXPECT_NE(strip.grab().toImage(), before);
}

TEST_F(StripTest, AnythingThatASensorMayReportCanBeDrawn) {
    feel(0.1, 24.9);
    feel(0.1, 0.2);
    strip.addSlap({.seconds = seconds, .amplitude = 24.0});
    strip.setThreshold(-1.0);
    strip.grab();
    strip.setThreshold(1e300);
    strip.grab();
    seconds += 1e6;
    feel(0.1);
    strip.grab();
    EXPECT_EQ(accessibleText(strip, QAccessible::Description), "No slap");
}

} // namespace
} // namespace quiverly
