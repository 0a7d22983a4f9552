#include "ui/controls/ScrollArea.h"

#include <gtest/gtest.h>

#include <QScrollBar>
#include <QTest>
#include <QVBoxLayout>

#include "support/Screen.h"
#include "ui/Theme.h"

namespace quiverly {
namespace {

class ScrollAreaTest : public testing::Test {
protected:
    ScrollAreaTest() {
        content->setMinimumSize(100, 400);
        area.resize(150, 200);
        area.show();
        area.activateWindow();
        QApplication::processEvents();
    }

    QWidget* content = new QWidget;
    ScrollArea area{content};
};

TEST_F(ScrollAreaTest, TheKeyboardScrollsWhatDoesNotFit) {
    QTest::keyClick(&area, Qt::Key_Tab);
    ASSERT_EQ(QApplication::focusWidget(), &area);
    EXPECT_EQ(accessibleText(area), "Contents");
    QTest::keyClick(&area, Qt::Key_Down);
    EXPECT_GT(area.verticalScrollBar()->value(), 0);
    expectSimilar(colorAt(area, {75, 1}), Theme::current().colors().focus);
    area.clearFocus();
    EXPECT_NE(colorAt(area, {75, 1}), Theme::current().colors().focus);
}

TEST_F(ScrollAreaTest, AThinBarAtTheEdgeShowsHowFarItIsScrolled) {
    QScrollBar* bar = nullptr;
    for (QScrollBar* candidate : area.findChildren<QScrollBar*>()) {
        if (candidate->isVisible()) bar = candidate;
    }
    ASSERT_NE(bar, nullptr);
    EXPECT_EQ(bar->geometry(), QRect(150 - 10, 0, 10, 200));
    EXPECT_EQ(area.viewport()->width(), 150) << "it lies over the content";
    const QColor ground = colorAt(area, {75, 100});
    EXPECT_EQ(colorAt(area, {145, 20}), Theme::current().colors().tertiary);
    EXPECT_EQ(colorAt(area, {145, 190}), ground);
    bar->setValue(bar->maximum());
    EXPECT_EQ(area.verticalScrollBar()->value(), 200);
    EXPECT_EQ(colorAt(area, {145, 20}), ground);
    EXPECT_EQ(colorAt(area, {145, 180}), Theme::current().colors().tertiary);
    area.resize(150, 400);
    QApplication::processEvents();
    EXPECT_FALSE(bar->isVisible());
}

TEST_F(ScrollAreaTest, WhatIsRevealedStaysInViewUntilTheUserScrolls) {
    content->setMinimumSize(0, 0);
    auto* column = new QVBoxLayout(content);
    auto* above = new QWidget;
    auto* part = new QLabel("part");
    column->addWidget(above);
    column->addWidget(part);
    above->setMinimumHeight(500);
    const auto isInView = [&] { return area.viewport()->rect().contains(place(*part, *area.viewport())); };
    ASSERT_TRUE(QTest::qWaitFor([&] { return area.verticalScrollBar()->maximum() > 200; }, 60'000));
    ASSERT_FALSE(isInView());
    area.reveal(*part);
    EXPECT_TRUE(isInView());
    above->setMinimumHeight(900);
    EXPECT_TRUE(QTest::qWaitFor([&] { return area.verticalScrollBar()->maximum() > 600; }, 60'000));
    EXPECT_TRUE(isInView());
    area.verticalScrollBar()->triggerAction(QScrollBar::SliderToMinimum);
    above->setMinimumHeight(1000);
    EXPECT_TRUE(QTest::qWaitFor([&] { return area.verticalScrollBar()->maximum() > 700; }, 60'000));
    EXPECT_EQ(area.verticalScrollBar()->value(), 0);
}

TEST_F(ScrollAreaTest, TheKeyboardSkipsAContentThatFits) {
    area.resize(150, 400);
    QApplication::processEvents();
    EXPECT_EQ(area.focusPolicy(), Qt::NoFocus);
}

TEST_F(ScrollAreaTest, AsksForTheWidthOfItsContent) {
    const int before = area.minimumSizeHint().width();
    EXPECT_EQ(before, 100);
    content->setMinimumWidth(150);
    EXPECT_EQ(area.minimumSizeHint().width(), before + 50);
}

TEST_F(ScrollAreaTest, WhatHoldsItGrowsWithItsContent) {
    auto* part = new QWidget;
    (new QVBoxLayout(content))->addWidget(part);
    QWidget window;
    (new QVBoxLayout(&window))->addWidget(&area);
    window.show();
    QApplication::processEvents();
    const int before = window.minimumWidth();
    part->setMinimumWidth(300);
    EXPECT_TRUE(QTest::qWaitFor([&] { return window.minimumWidth() > before; }, 60'000));
    area.setParent(nullptr);
}

} // namespace
} // namespace quiverly
