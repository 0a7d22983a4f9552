#include "ui/controls/StepList.h"

#include <gtest/gtest.h>

#include "Screen.h"
#include "ui/Theme.h"
#include "ui/controls/Connector.h"
#include "ui/controls/Picture.h"

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
    EXPECT_EQ(colorAt(find<Picture>(list, "Step 1"), {4, 14}), Theme::primaryPink);
    EXPECT_NE(colorAt(find<Picture>(list, "Step 2"), {4, 14}), Theme::primaryPink);
    EXPECT_EQ(colorOf(text(list, "First")), Theme::current().colors().primary);
    EXPECT_EQ(colorOf(text(list, "Second")), Theme::current().colors().secondary);
    EXPECT_TRUE(first->isVisible());
    EXPECT_FALSE(second->isVisible());
}

TEST_F(StepListTest, OnlyTheFirstStepKeepsItsContentWhenComplete) {
    list.show(1, false, true);
    list.show(2, false, true);
    EXPECT_TRUE(shows<Picture>(list, "Step 1, done"));
    EXPECT_TRUE(shows<Picture>(list, "Step 2, done"));
    EXPECT_TRUE(first->isVisible());
    EXPECT_FALSE(second->isVisible());
    EXPECT_EQ(colorOf(text(list, "Second")), Theme::current().colors().primary);
}

TEST_F(StepListTest, TheConnectorLightsUpWhenTheUpperStepIsComplete) {
    Connector* connector = nullptr;
    for (QWidget* child : list.findChildren<QWidget*>()) {
        if (auto* candidate = dynamic_cast<Connector*>(child)) connector = candidate;
    }
    ASSERT_NE(connector, nullptr);
    EXPECT_EQ(connector->height(), 22 + 2 * 6);
    list.show(1, true, false);
    const QColor before = colorAt(*connector, {14, 17});
    EXPECT_EQ(colorAt(*connector, {12, 17}), colorAt(*connector, {15, 17})) << "two pixels wide, 13 from the edge";
    EXPECT_NE(before, colorAt(*connector, {12, 17}));
    EXPECT_EQ(colorAt(*connector, {14, 5}), colorAt(*connector, {12, 17})) << "six pixels of padding";
    list.show(1, false, true);
    EXPECT_NE(colorAt(*connector, {14, 17}), before);
}

} // namespace
} // namespace quiverly
