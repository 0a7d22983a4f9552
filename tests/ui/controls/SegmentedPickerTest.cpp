#include "ui/controls/SegmentedPicker.h"

#include <gtest/gtest.h>

#include "support/Screen.h"
#include "ui/Theme.h"

namespace quiverly {
namespace {

TEST(SegmentedPickerTest, AScreenReaderFindsAGroupOfRadioButtons) {
    SegmentedPicker picker("Mode", {"One", "Two"});
    picker.select(1);
    EXPECT_EQ(describe(picker).role(), QAccessible::Grouping);
    EXPECT_EQ(describe(picker).text(QAccessible::Name), "Mode");
    ASSERT_EQ(describe(picker).childCount(), 2);
    EXPECT_EQ(describe(picker).child(0)->role(), QAccessible::RadioButton);
    EXPECT_EQ(describe(picker).child(0)->text(QAccessible::Name), "One");
    EXPECT_FALSE(describe(picker).child(0)->state().checked);
    EXPECT_TRUE(describe(picker).child(1)->state().checked);
}

TEST(SegmentedPickerTest, ShowingASelectionIsNotAChoiceOfTheUser) {
    SegmentedPicker picker("Mode", {"One", "Two"});
    int choices = 0;
    picker.onChoice = [&](int) { ++choices; };
    picker.select(0);
    picker.select(1);
    EXPECT_EQ(choices, 0);
    describe(picker).child(0)->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(choices, 1);
}

TEST(SegmentedPickerTest, WhatCannotBeChosenIsGreyed) {
    SegmentedPicker picker("Mode", {"One", "Two"});
    picker.select(0);
    picker.resize(200, 24);
    picker.show();
    const Theme::Colors& colors = Theme::current().colors();
    const QColor enabled = colorAt(picker, {10, 12});
    EXPECT_EQ(enabled, colors.selection);
    picker.setEnabled(false);
    expectNear(colorAt(picker, {10, 12}), over(colors.selection, 0.5, colors.track));
    EXPECT_FALSE(hasColor(picker.grab().toImage(), colors.primary));
}

} // namespace
} // namespace quiverly
