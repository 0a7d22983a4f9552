#include <gtest/gtest.h>

#include <QAbstractEventDispatcher>
#include <QAccessible>
#include <QScrollBar>
#include <QVBoxLayout>
#include <QVariantAnimation>

#include "EventCounter.h"
#include "Screen.h"
#include "Stage.h"
#include "ui/Theme.h"
#include "ui/controls/Connector.h"
#include "ui/controls/CrossFade.h"
#include "ui/controls/PushButton.h"
#include "ui/controls/ScrollArea.h"
#include "ui/controls/SegmentedPicker.h"
#include "ui/controls/Slider.h"
#include "ui/controls/Spinner.h"
#include "ui/controls/StatusLine.h"
#include "ui/controls/StepList.h"

namespace quiverly {
namespace {

QAccessibleInterface& describe(QWidget& widget) {
    return *QAccessible::queryAccessibleInterface(&widget);
}

QList<QAbstractEventDispatcher::TimerInfo> timersOf(QObject& object) {
    return QAbstractEventDispatcher::instance()->registeredTimers(&object);
}

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

TEST(SliderTest, ShowingWhatIsNoNumberStaysInsideTheRange) {
    Slider slider("Sensitivity", 4, 40);
    slider.onMove = [](double) { FAIL() << "showing is no move"; };
    for (const double value : {std::nan(""), HUGE_VAL, -HUGE_VAL, 1e308}) {
        slider.show(value);
        EXPECT_GE(slider.value(), 4);
        EXPECT_LE(slider.value(), 40);
    }
}

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

TEST(SegmentedPickerTest, SelectingIsNoChoiceOfTheUser) {
    SegmentedPicker picker("Mode", {"One", "Two"});
    int choices = 0;
    picker.onChoice = [&](int) { ++choices; };
    picker.select(0);
    picker.select(1);
    EXPECT_EQ(choices, 0);
    describe(picker).child(0)->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(choices, 1);
}

TEST(PushButtonTest, AnEnterKeyHeldDownPressesOnce) {
    PushButton button("Continue");
    button.show();
    int clicks = 0;
    QObject::connect(&button, &PushButton::clicked, [&] { ++clicks; });
    QTest::keyPress(&button, Qt::Key_Return);
    QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, {}, "\r", true);
    QApplication::sendEvent(&button, &repeated);
    EXPECT_EQ(clicks, 1);
}

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

TEST_F(ScrollAreaTest, TheKeyboardPassesOverWhatFits) {
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

TEST(SpinnerTest, TurnsEightToTenTimesASecondWhileItIsSeen) {
    Spinner spinner;
    EXPECT_TRUE(timersOf(spinner).isEmpty());
    spinner.show();
    ASSERT_EQ(timersOf(spinner).size(), 1);
    EXPECT_GE(timersOf(spinner)[0].interval, 100);
    EXPECT_LE(timersOf(spinner)[0].interval, 125);
    spinner.hide();
    EXPECT_TRUE(timersOf(spinner).isEmpty());
}

TEST(SpinnerTest, RestsInAMinimisedWindow) {
    Spinner spinner;
    spinner.show();
    QHideEvent minimised;
    QSpontaneKeyEvent::setSpontaneous(&minimised);
    qApp->notify(&spinner, &minimised);
    EXPECT_TRUE(timersOf(spinner).isEmpty());
    QShowEvent restored;
    QSpontaneKeyEvent::setSpontaneous(&restored);
    qApp->notify(&spinner, &restored);
    EXPECT_EQ(timersOf(spinner).size(), 1);
}

TEST(SpinnerTest, EachStepLooksDifferent) {
    Spinner spinner;
    spinner.show();
    const QImage before = spinner.grab().toImage();
    QTimerEvent tick(timersOf(spinner)[0].timerId);
    QApplication::sendEvent(&spinner, &tick);
    EXPECT_NE(spinner.grab().toImage(), before);
}

struct LineCase {
    StatusLine::Status status;
    const char* icon;
    bool orange;
};

class StatusLineTest : public testing::TestWithParam<LineCase> {};

TEST_P(StatusLineTest, TheFirstIconThatAppliesWins) {
    const LineCase& line = GetParam();
    StatusLine view;
    static_cast<QWidget&>(view).show();
    view.show(line.status);
    EXPECT_TRUE(shows<Picture>(view, line.icon)) << line.icon;
    const Theme::Colors& colors = Theme::current().colors();
    EXPECT_EQ(colorOf(text(view, "text")), line.orange ? colors.orange : colors.primary);
    EXPECT_EQ(text(view, "text").font().pixelSize(), 12);
}

INSTANTIATE_TEST_SUITE_P(
    Icons, StatusLineTest,
    testing::Values(LineCase{{.text = "text"}, "Working", false}, LineCase{{.ok = true, .text = "text"}, "Done", false},
                    LineCase{{.text = "text", .warning = true}, "Warning", true},
                    LineCase{{.ok = true, .text = "text", .warning = true}, "Done", false},
                    LineCase{{.ok = true, .text = "text", .forceWarning = true}, "Warning", true},
                    LineCase{{.text = "text", .hand = true}, "Slap now", false},
                    LineCase{{.ok = true, .text = "text", .forceWarning = true, .hand = true}, "Slap now", true}));

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

TEST(CrossFadeTest, WhatWasShownFadesAndIsGone) {
    QWidget widget;
    widget.resize(20, 20);
    widget.show();
    crossFade(widget);
    const auto* fade = widget.findChild<QVariantAnimation*>();
    ASSERT_NE(fade, nullptr);
    EXPECT_EQ(fade->duration(), 250);
    EXPECT_EQ(fade->easingCurve(), QEasingCurve(QEasingCurve::InOutQuad));
    EXPECT_TRUE(QTest::qWaitFor([&] { return widget.children().isEmpty(); }, 60'000));
}

TEST(CrossFadeTest, AHiddenWidgetHasNothingToFade) {
    QWidget widget;
    crossFade(widget);
    EXPECT_TRUE(widget.children().isEmpty());
}

TEST(CrossFadeTest, HidingEndsIt) {
    QWidget widget;
    widget.show();
    crossFade(widget);
    widget.hide();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(widget.children().isEmpty());
}

} // namespace
} // namespace quiverly
