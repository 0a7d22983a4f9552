#include "ui/controls/StepList.h"

#include <gtest/gtest.h>

#include <QLayout>

#include "support/Screen.h"
#include "ui/Theme.h"

namespace quiverly {
namespace {

class StepListTest : public testing::Test {
protected:
    StepListTest() {
        list.add("First", first);
        list.add("Second", second);
        list.resize(300, 200);
        static_cast<QWidget&>(list).show();
    }

    QLabel* first = new QLabel("first content");
    QLabel* second = new QLabel("second content");
    StepList list;
};

TEST_F(StepListTest, AnActiveStepShowsItsNumberAndContent) {
    list.show(1, true, false);
    list.show(2, false, false);
    EXPECT_EQ(colorAt(picture(list, "Step 1"), {4, 14}), Theme::primaryPink);
    EXPECT_NE(colorAt(picture(list, "Step 2"), {4, 14}), Theme::primaryPink);
    EXPECT_EQ(colorOf(text(list, "First")), Theme::current().colors().primary);
    EXPECT_EQ(colorOf(text(list, "Second")), Theme::current().colors().secondary);
    EXPECT_TRUE(first->isVisible());
    EXPECT_FALSE(second->isVisible());
}

TEST_F(StepListTest, ABadgeIsGreyUntilItsTurnAndHasAWhiteNumberOnPink) {
    list.show(1, true, false);
    list.show(2, false, false);
    const QColor grey = Theme::current().colors().secondary;
    const QImage lit = picture(list, "Step 1").grab().toImage();
    const QImage dull = picture(list, "Step 2").grab().toImage();
    EXPECT_TRUE(hasColor(lit, Qt::white));
    EXPECT_TRUE(hasColor(dull, grey));
    EXPECT_FALSE(hasColor(dull, Qt::white));
    expectNear(colorAt(dull, {4, 14}), over(grey, 0.25, list.palette().color(QPalette::Window)));
}

TEST_F(StepListTest, OnlyTheFirstStepKeepsItsContentWhenComplete) {
    list.show(1, false, true);
    list.show(2, false, true);
    EXPECT_TRUE(showsPicture(list, "Step 1, done"));
    EXPECT_TRUE(showsPicture(list, "Step 2, done"));
    EXPECT_TRUE(first->isVisible());
    EXPECT_FALSE(second->isVisible());
    EXPECT_EQ(colorOf(text(list, "Second")), Theme::current().colors().primary);
}

TEST_F(StepListTest, TheConnectorLightsUpWhenTheUpperStepIsComplete) {
    ASSERT_EQ(list.layout()->count(), 3) << "a step, the connector, a step";
    QWidget* connector = list.layout()->itemAt(1)->widget();
    EXPECT_EQ(connector->height(), 22 + 2 * 6);
    const QColor ground = list.palette().color(QPalette::Window);
    list.show(1, true, false);
    const QImage dull = connector->grab().toImage();
    for (const QPoint inside : {QPoint(13, 6), QPoint(14, 27)}) {
        expectNear(colorAt(dull, inside), over(Theme::current().colors().secondary, 0.25, ground));
    }
    for (const QPoint outside : {QPoint(12, 17), QPoint(15, 17), QPoint(13, 5), QPoint(13, 28)}) {
        EXPECT_EQ(colorAt(dull, outside), ground);
    }
    list.show(1, false, true);
    expectNear(colorAt(*connector, {14, 17}), over(Theme::primaryPink, 0.7, ground));
}

} // namespace
} // namespace quiverly
