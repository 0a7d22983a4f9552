#include "ui/controls/Slider.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/Screen.h"

namespace quiverly {
namespace {

TEST(SliderTest, AScreenReaderReadsTheValueInItsOwnUnit) {
    Slider slider("Sensitivity", 4, 40);
    slider.show(0.12);
    QAccessibleInterface& interface = describe(slider);
    EXPECT_EQ(interface.role(), QAccessible::Slider);
    EXPECT_EQ(interface.text(QAccessible::Name), "Sensitivity");
    EXPECT_EQ(interface.text(QAccessible::Value), "0.12");
    EXPECT_EQ(interface.valueInterface()->currentValue().toDouble(), 0.12);
    EXPECT_EQ(interface.valueInterface()->minimumValue().toDouble(), 0.04);
    EXPECT_EQ(interface.valueInterface()->maximumValue().toDouble(), 0.4);
    EXPECT_EQ(interface.valueInterface()->minimumStepSize().toDouble(), 0.01);
    slider.show(3.0);
    EXPECT_EQ(interface.valueInterface()->currentValue().toDouble(), 3.0);
}

TEST(SliderTest, AScreenReaderMovesIt) {
    Slider slider("Sensitivity", 4, 40);
    slider.show(0.12);
    std::vector<double> moves;
    slider.onMove = [&](double value) { moves.push_back(value); };
    QAccessibleInterface& interface = describe(slider);
    interface.valueInterface()->setCurrentValue(0.2);
    interface.actionInterface()->doAction(QAccessibleActionInterface::increaseAction());
    interface.actionInterface()->doAction(QAccessibleActionInterface::decreaseAction());
    interface.valueInterface()->setCurrentValue(99.0);
    interface.valueInterface()->setCurrentValue(-99.0);
    interface.valueInterface()->setCurrentValue(std::nan(""));
    interface.valueInterface()->setCurrentValue("loud");
    EXPECT_EQ(moves, (std::vector{0.2, 0.21, 0.2, 0.4, 0.04}));
    EXPECT_TRUE(interface.actionInterface()->actionNames().contains(QAccessibleActionInterface::increaseAction()));
}

TEST(SliderTest, EveryStepIsTheHundredthItShows) {
    Slider slider("Sensitivity", 4, 40);
    for (int hundredths = 4; hundredths <= 40; ++hundredths) {
        slider.show(0.0);
        slider.choose(hundredths / 100.0);
        EXPECT_EQ(slider.shown(), hundredths / 100.0);
        slider.show(hundredths / 100.0);
        EXPECT_EQ(slider.value(), hundredths);
    }
}

TEST(SliderTest, AValueThatIsNotANumberIsShownInsideTheRange) {
    Slider slider("Sensitivity", 4, 40);
    slider.onMove = [](double) { FAIL() << "showing is not moving"; };
    for (const double value : {std::nan(""), HUGE_VAL, -HUGE_VAL, 1e308}) {
        slider.show(value);
        EXPECT_GE(slider.value(), 4);
        EXPECT_LE(slider.value(), 40);
    }
}

} // namespace
} // namespace quiverly
