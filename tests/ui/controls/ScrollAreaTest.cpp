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
    EXPECT_EQ(colorAt(area, {75, 1}), Theme::current().colors().focus);
    area.clearFocus();
    EXPECT_NE(colorAt(area, {75, 1}), Theme::current().colors().focus);
}

TEST_F(ScrollAreaTest, TheKeyboardSkipsAContentThatFits) {
    area.resize(150, 400);
    QApplication::processEvents();
    EXPECT_EQ(area.focusPolicy(), Qt::NoFocus);
}

TEST_F(ScrollAreaTest, AsksForTheWidthOfItsContent) {
    const int before = area.minimumSizeHint().width();
    EXPECT_GT(before, 100);
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
