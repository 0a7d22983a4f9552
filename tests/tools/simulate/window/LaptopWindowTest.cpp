#include "tools/simulate/window/LaptopWindow.h"

#include <gtest/gtest.h>

#include <QRegularExpression>
#include <QTest>

#include "support/Activity.h"
#include "support/Screen.h"
#include "tools/simulate/InputReport.h"
#include "tools/simulate/Motion.h"
#include "tools/simulate/window/ActionButton.h"
#include "tools/simulate/window/Strip.h"
#include "ui/Theme.h"
#include "ui/controls/FocusRing.h"

namespace quiverly {
namespace {

class LaptopWindowTest : public testing::Test {
protected:
    LaptopWindowTest() {
        laptop.onCommand = [this](const QByteArray& command) { commands << command; };
        laptop.show();
        frame.activateWindow();
        QApplication::processEvents();
    }
    ~LaptopWindowTest() override { Theme::current().prefer({}); }

    void obey(const char* command) { laptop.tell(window::Obeyed{command}); }

    void report(int count) {
        for (int index = 0; index < count; ++index) {
            const InputReport report = inputReport(motion.next(), 0);
            laptop.tell(window::Report{.millisecond = ++millisecond, .bytes = {report.begin(), report.end()}});
        }
    }

    VirtualPlatform platform;
    LaptopWindow laptop{platform};
    QMainWindow& frame = laptop.window();
    Motion motion{1};
    std::int64_t millisecond = 0;
    QList<QByteArray> commands;
};

TEST_F(LaptopWindowTest, KeysFromOneToNineSlap) {
    QTest::keyClick(&frame, Qt::Key_1);
    QTest::keyClick(&frame, Qt::Key_6);
    QTest::keyClick(&frame, Qt::Key_9);
    QTest::keyClick(&frame, Qt::Key_0);
    EXPECT_EQ(commands, (QList<QByteArray>{"slap 0.10", "slap 0.60", "slap 0.90"}));
}

TEST_F(LaptopWindowTest, ButtonsDoWhatTheySay) {
    for (const char* button : {"Bump the table", "Shut the lid", "Pick up", "Type", "Walk", "Tilt"}) {
        find<ActionButton>(frame, button).click();
    }
    EXPECT_EQ(commands, (QList<QByteArray>{"bump", "lid", "lift", "type", "walk", "tilt 0.5 0 0.866"}));
}

TEST_F(LaptopWindowTest, WhatGoesOnIsEndedByTheSameButton) {
    auto& type = find<ActionButton>(frame, "Type");
    type.click();
    EXPECT_FALSE(type.isChecked()); // nothing was obeyed yet
    obey("type");
    EXPECT_TRUE(type.isChecked());
    type.click();
    obey("rest");
    EXPECT_FALSE(type.isChecked());
    obey("tilt 0.5 0 0.866"); // typed into the terminal
    EXPECT_TRUE(find<ActionButton>(frame, "Tilt").isChecked());
    find<ActionButton>(frame, "Tilt").click();
    EXPECT_EQ(commands, (QList<QByteArray>{"type", "rest", "tilt 0 0 1"}));
}

TEST_F(LaptopWindowTest, ItSaysWhatTheApplicationFinds) {
    EXPECT_TRUE(showsText(frame, "Idle"));
    laptop.tell(window::Reporting{7});
    EXPECT_TRUE(showsText(frame, "Listening"));
    laptop.tell(window::Silent{});
    find<ActionButton>(frame, "Deny access").click();
    obey("deny");
    EXPECT_TRUE(showsText(frame, "Denied"));
    find<ActionButton>(frame, "Allow access").click();
    obey("allow");
    EXPECT_TRUE(showsText(frame, "Idle"));
    find<ActionButton>(frame, "Unplug sensor").click();
    obey("vanish");
    EXPECT_TRUE(showsText(frame, "Unplugged"));
    find<ActionButton>(frame, "Plug in sensor").click();
    obey("appear");
    obey("sleep");
    EXPECT_TRUE(showsText(frame, "Asleep"));
    obey("wake");
    EXPECT_TRUE(showsText(frame, "Idle"));
    EXPECT_EQ(commands, (QList<QByteArray>{"deny", "allow", "vanish", "appear"}));
}

TEST_F(LaptopWindowTest, ASlapIsSpokenAndItsAmplitudeShown) {
    laptop.tell(window::Reporting{7});
    report(1000);
    motion.slap({.peak = 0.6});
    report(1000);
    auto& said = text(frame, "slap 0.6 g");
    EXPECT_TRUE(describe(said).role() == QAccessible::Notification || QT_VERSION >= QT_VERSION_CHECK(6, 8, 0));
    auto& strip = picture(frame, "What Quiverly’s detector makes of the last 8 seconds");
    const QString slaps = accessibleText(strip, QAccessible::Description);
    EXPECT_TRUE(slaps.contains(QRegularExpression("^Slaps: (1\\.00|0\\.99).g, 0\\.(60|59).g$"))) << slaps.toStdString();
}

TEST_F(LaptopWindowTest, ASlapIsNeverSaidToBeBelowTheThreshold) {
    laptop.tell(window::Reporting{7});
    report(1000);
    motion.slap({.peak = 0.14});
    report(1000);
    EXPECT_TRUE(showsText(frame, "slap 0.14 g"));
    laptop.setThreshold(0.62);
    motion.slap({.peak = 0.64});
    report(1000);
    EXPECT_TRUE(showsText(frame, "slap 0.64 g"));
}

TEST_F(LaptopWindowTest, AProblemIsShown) {
    laptop.tell(window::Problem{"the sensor does not report now: the slap is lost"});
    EXPECT_TRUE(showsText(frame, "the sensor does not report now: the slap is lost"));
}

TEST_F(LaptopWindowTest, TheThresholdIsThatOfTheSettings) {
    laptop.setThreshold(0.7);
    laptop.tell(window::Reporting{7});
    report(1000);
    motion.slap({.peak = 0.6});
    report(1000);
    EXPECT_FALSE(showsText(frame, "slap 0.6 g"));
}

TEST_F(LaptopWindowTest, NothingMovesAtRestThoughReportsCome) {
    laptop.tell(window::Reporting{7});
    report(12'000);
    QApplication::processEvents();
    EXPECT_EQ(activity(frame), QStringList());
}

TEST_F(LaptopWindowTest, EveryControlIsReachedWithTabAndSaysWhatItIs) {
    QStringList names;
    for (int presses = 0; presses < 9; ++presses) {
        QWidget* focus = QApplication::focusWidget();
        ASSERT_NE(focus, nullptr);
        names << accessibleText(*focus);
        QTest::keyClick(focus, Qt::Key_Tab);
    }
    EXPECT_EQ(names, (QStringList{"Laptop", "Type", "Walk", "Bump the table", "Shut the lid", "Tilt", "Pick up",
                                  "Unplug sensor", "Deny access"}));
    EXPECT_EQ(accessibleText(*QApplication::focusWidget()), "Laptop");
}

TEST_F(LaptopWindowTest, ItsTextsHaveTheColoursOfHighContrast) {
    Theme::current().prefer({.dark = true, .highContrast = true});
    EXPECT_EQ(colorOf(text(frame, "Simulated laptop")), QColor(Qt::white));
    Theme::current().prefer({.dark = false, .highContrast = true});
    EXPECT_EQ(colorOf(text(frame, "Simulated laptop")), QColor(Qt::black));
}

} // namespace
} // namespace quiverly
