#include "tools/simulate/window/LaptopView.h"

#include <gtest/gtest.h>

#include <vector>

#include <QAbstractEventDispatcher>
#include <QTest>

#include "support/Paintings.h"
#include "support/Screen.h"
#include "ui/Theme.h"

namespace quiverly {
namespace {

class LaptopViewTest : public testing::Test {
protected:
    LaptopViewTest() {
        view.seconds = [this] { return now; };
        view.onSlap = [this](double peak) { slaps.push_back(peak); };
        view.resize(500, 300);
        view.show();
        QApplication::processEvents();
    }
    ~LaptopViewTest() override { Theme::current().prefer({}); }

    bool hasTimer() { return !QAbstractEventDispatcher::instance()->registeredTimers(&view).isEmpty(); }

    // Lets its timer run once, if it has one.
    void tick() {
        for (const auto& timer : QAbstractEventDispatcher::instance()->registeredTimers(&view)) {
            QTimerEvent event(timer.timerId);
            QApplication::sendEvent(&view, &event);
        }
    }

    const QPoint deck{250, 230};
    double now = 10.0; // seconds
    LaptopView view;
    std::vector<double> slaps;
};

TEST(LaptopViewPeakTest, ALongerOrFartherPressIsHarderUpToALimit) {
    EXPECT_EQ(LaptopView::peakOf(0.0, 0.0), 0.3);
    EXPECT_EQ(LaptopView::peakOf(0.0, 6.0), 0.3); // a hand is not that calm
    EXPECT_EQ(LaptopView::peakOf(0.5, 0.0), 0.8);
    EXPECT_EQ(LaptopView::peakOf(0.0, 106.0), 1.1);
    EXPECT_EQ(LaptopView::peakOf(0.3333, 0.0), 0.63);
    EXPECT_EQ(LaptopView::peakOf(1.69, 0.0), 1.99);
    EXPECT_EQ(LaptopView::peakOf(1.8, 0.0), 2.0);
    EXPECT_EQ(LaptopView::peakOf(1000.0, 1000.0), 2.0);
}

TEST_F(LaptopViewTest, AReleasedPressIsASlap) {
    QTest::mousePress(&view, Qt::LeftButton, {}, deck);
    EXPECT_TRUE(slaps.empty());
    now += 0.4;
    QTest::mouseRelease(&view, Qt::LeftButton, {}, deck);
    EXPECT_EQ(slaps, std::vector{0.7});
}

TEST_F(LaptopViewTest, ADragIsHarder) {
    QTest::mousePress(&view, Qt::LeftButton, {}, deck);
    QTest::mouseMove(&view, deck + QPoint(0, 56));
    QTest::mouseRelease(&view, Qt::LeftButton, {}, deck + QPoint(0, 56));
    EXPECT_EQ(slaps, std::vector{0.7});
}

TEST_F(LaptopViewTest, APressBesideTheLaptopOrWithAnotherButtonIsNone) {
    QTest::mouseClick(&view, Qt::LeftButton, {}, {2, 2});
    QTest::mouseClick(&view, Qt::RightButton, {}, deck);
    EXPECT_TRUE(slaps.empty());
}

TEST_F(LaptopViewTest, SpaceAndEnterPressItToo) {
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return}) {
        slaps.clear();
        QTest::keyPress(&view, key);
        QKeyEvent repeated(QEvent::KeyPress, key, {}, {}, true);
        QApplication::sendEvent(&view, &repeated);
        now += 0.2;
        QTest::keyRelease(&view, key);
        EXPECT_EQ(slaps, std::vector{0.5});
    }
}

TEST_F(LaptopViewTest, ItIsAButtonThatAssistiveToolsPress) {
    EXPECT_EQ(describe(view).role(), QAccessible::Button);
    EXPECT_EQ(accessibleText(view), "Laptop");
    describe(view).actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(slaps, std::vector{LaptopView::leastPeak});
}

TEST_F(LaptopViewTest, APressGrowsAtThePointer) {
    QTest::mousePress(&view, Qt::LeftButton, {}, deck);
    const QImage soft = view.grab().toImage();
    now += 1.0;
    const QImage hard = view.grab().toImage();
    EXPECT_GT(rowsOf(hard, Theme::current().colors().accent), rowsOf(soft, Theme::current().colors().accent) + 10);
    EXPECT_TRUE(hasTimer());
}

TEST_F(LaptopViewTest, NothingIsPaintedAndNoTimerRunsAtRest) {
    EXPECT_FALSE(hasTimer());
    view.obey(command::Slap{{.peak = 0.6}});
    EXPECT_TRUE(hasTimer());
    int frames = 0;
    for (; hasTimer(); ++frames) {
        ASSERT_LT(frames, 1000);
        now += 0.016;
        tick();
    }
    EXPECT_GT(frames, 20);
    QApplication::processEvents();
    const QImage atRest = view.grab().toImage();
    const Paintings paintings(view);
    now += 100.0;
    tick();
    QApplication::processEvents();
    EXPECT_EQ(paintings.count, 0);
    EXPECT_EQ(view.grab().toImage(), atRest);
}

TEST_F(LaptopViewTest, TypingMovesKeysUntilRest) {
    view.obey(command::Type{});
    EXPECT_TRUE(hasTimer());
    now += 100.0;
    tick();
    EXPECT_TRUE(hasTimer());
    view.obey(command::Rest{});
    EXPECT_FALSE(hasTimer());
}

TEST_F(LaptopViewTest, AHiddenWindowHasNoTimer) {
    view.obey(command::Walk{});
    view.hide();
    EXPECT_FALSE(hasTimer());
    view.show();
    EXPECT_TRUE(hasTimer());
}

TEST_F(LaptopViewTest, ForUsersWhoWantNoMotionASlapIsAMarkOnALaptopThatStaysStill) {
    Theme::current().prefer({.dark = false, .reducedMotion = true});
    const QImage before = view.grab().toImage();
    view.obey(command::Slap{{.peak = 0.6}});
    now += 0.1;
    const QImage marked = view.grab().toImage();
    EXPECT_NE(marked, before);
    now += 0.3;
    EXPECT_EQ(view.grab().toImage(), marked);
    now += 0.4;
    tick();
    EXPECT_EQ(view.grab().toImage(), before);
    EXPECT_FALSE(hasTimer());
    view.obey(command::Walk{});
    EXPECT_FALSE(hasTimer());
}

TEST_F(LaptopViewTest, ChangesItsColoursWithTheTheme) {
    Theme::current().prefer({.dark = false});
    const QImage light = view.grab().toImage();
    Theme::current().prefer({.dark = true});
    EXPECT_NE(view.grab().toImage(), light);
}

} // namespace
} // namespace quiverly
