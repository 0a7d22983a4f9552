#include "ui/ContentView.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include <QClipboard>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSlider>

#include "support/Activity.h"
#include "support/PngPicture.h"
#include "support/Screen.h"
#include "support/Stage.h"
#include "support/TemporaryFolder.h"
#include "ui/Theme.h"
#include "ui/controls/FocusRing.h"

namespace quiverly {
namespace {

constexpr char inputMonitoringHint[] = "If macOS asks, allow Quiverly under Privacy → Input Monitoring";
constexpr char idleHint[] = "Press Start, then slap your MacBook.";

// Counts the events that the application's objects receive while it lives.
class EventCounter : public QObject {
public:
    EventCounter() { qApp->installEventFilter(this); }

    int count(QEvent::Type type) const {
        const auto found = counts.find(type);
        return found == counts.end() ? 0 : found->second;
    }

private:
    bool eventFilter(QObject*, QEvent* event) override {
        ++counts[event->type()];
        return false;
    }

    std::map<QEvent::Type, int> counts;
};

class ContentViewTest : public testing::Test {
protected:
    ContentViewTest() { engine.soundEnabled = true; }

    void open(QSize size = {420, 560}) {
        view.resize(size);
        view.show();
        stage.settle();
    }

    QPushButton& startButton() { return find<QPushButton>(view, "Start listening"); }
    QPushButton& stopButton() { return find<QPushButton>(view, "Stop"); }
    QSlider& slider() { return find<QSlider>(view, "Sensitivity"); }
    QRadioButton& segment(const QString& title) { return find<QRadioButton>(view, title); }

    // Starts listening; the first sample counts as a slap of 1 g.
    void listen() {
        click(startButton());
        stage.rest();
    }

    void click(QWidget& widget) {
        QTest::mouseClick(&widget, Qt::LeftButton);
        stage.settle();
    }

    void press(QWidget& widget, Qt::Key key) {
        QTest::keyClick(&widget, key);
        stage.settle();
    }

    // Presses the slider's handle, moves it by that many pixels, lets go.
    void drag(int pixels) {
        const int from = 10 + static_cast<int>((slider().width() - 19) * (slider().value() - 4) / 36.0);
        const int y = slider().height() / 2;
        QTest::mousePress(&slider(), Qt::LeftButton, {}, {from, y});
        QTest::mouseMove(&slider(), {from + pixels / 2, y});
        QTest::mouseMove(&slider(), {from + pixels, y});
        QTest::mouseRelease(&slider(), Qt::LeftButton, {}, {from + pixels, y});
        stage.settle();
    }

    std::optional<double> storedThreshold() {
        const auto stored = defaults::object("bonko.threshold");
        return stored ? std::optional(std::get<double>(*stored)) : std::nullopt;
    }

    Stage stage;
    BonkoEngine engine;
    ContentView view{engine};
};

TEST_F(ContentViewTest, ACounterAtZeroIsAbsent) {
    open();
    for (const QLabel* label : view.findChildren<QLabel*>()) {
        EXPECT_FALSE(label->isVisibleTo(&view) && label->text().startsWith("Slaps")) << label->text().toStdString();
    }
    listen();
    EXPECT_TRUE(showsText(view, "Slaps this session: 1  ·  last 1.000g"));
}

TEST_F(ContentViewTest, TheCounterRoundsTheAmplitudeToThreeDecimals) {
    open();
    listen();
    for (const double amplitude : {0.2, 0.2567}) stage.slap(amplitude);
    QLabel& counter = text(view, "Slaps this session: 3  ·  last 0.257g");
    EXPECT_EQ(colorOf(counter), Theme::current().colors().secondary);
    EXPECT_EQ(counter.font().pixelSize(), 10);
}

TEST_F(ContentViewTest, TheSensitivityAlwaysShowsTwoDecimals) {
    open();
    EXPECT_TRUE(showsText(view, "0.12"));
    engine.threshold = 0.1;
    stage.settle();
    EXPECT_TRUE(showsText(view, "0.10"));
    EXPECT_EQ(colorOf(text(view, "0.10")), Theme::current().colors().secondary);
}

TEST_F(ContentViewTest, TheSliderStaysInsideItsLimits) {
    open();
    press(slider(), Qt::Key_End);
    EXPECT_EQ(engine.threshold, 0.4);
    press(slider(), Qt::Key_Right);
    EXPECT_EQ(engine.threshold, 0.4);
    press(slider(), Qt::Key_Home);
    EXPECT_EQ(engine.threshold, 0.04);
    press(slider(), Qt::Key_Left);
    EXPECT_EQ(engine.threshold, 0.04);
    drag(10'000);
    EXPECT_EQ(engine.threshold, 0.4);
    drag(-10'000);
    EXPECT_EQ(engine.threshold, 0.04);
}

TEST_F(ContentViewTest, TheSliderMovesInStepsOfAHundredth) {
    open();
    for (int hundredths = 13; hundredths <= 40; ++hundredths) {
        press(slider(), Qt::Key_Right);
        EXPECT_EQ(engine.threshold, hundredths / 100.0);
        EXPECT_TRUE(showsText(view, QString::asprintf("%.2f", hundredths / 100.0)));
    }
    press(slider(), Qt::Key_Left);
    EXPECT_EQ(engine.threshold, 0.39);
}

TEST_F(ContentViewTest, MovingTheSliderRightAsksForAHarderSlap) {
    open();
    drag(60);
    EXPECT_GT(engine.threshold, 0.12);
    const double higher = engine.threshold;
    drag(-30);
    EXPECT_LT(engine.threshold, higher);
    EXPECT_GT(engine.threshold, 0.12);
}

TEST_F(ContentViewTest, MovingTheSliderStoresAndAppliesTheThresholdAtOnce) {
    open();
    listen();
    press(slider(), Qt::Key_Right);
    EXPECT_EQ(storedThreshold(), 0.13);
    stage.slap(0.125);
    EXPECT_EQ(engine.slapCount, 1) << "too soft now";
    press(slider(), Qt::Key_Left);
    stage.slap(0.125);
    EXPECT_EQ(engine.slapCount, 2);
}

TEST_F(ContentViewTest, AClickBesideTheHandleMovesItThere) {
    open();
    QTest::mouseClick(&slider(), Qt::LeftButton, {}, {slider().width() - 10, slider().height() / 2});
    EXPECT_EQ(engine.threshold, 0.4);
}

TEST_F(ContentViewTest, AClickOnTheHandleWritesNothing) {
    engine.threshold = 0.123;
    open();
    int writes = 0;
    stage.platform.defaults.onWrite = [&](const std::string&, const defaults::Object&) { ++writes; };
    drag(0);
    EXPECT_EQ(engine.threshold, 0.123);
    EXPECT_EQ(writes, 0);
}

TEST_F(ContentViewTest, OtherMouseButtonsAndTheWheelLeaveTheSliderAlone) {
    open();
    QTest::mouseClick(&slider(), Qt::RightButton, {}, {slider().width() - 10, slider().height() / 2});
    QWheelEvent wheel({50, 10}, slider().mapToGlobal(QPoint(50, 10)), {}, {0, 120}, {}, {}, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&slider(), &wheel);
    stage.settle();
    EXPECT_EQ(engine.threshold, 0.12);
}

// A threshold that the slider cannot reach, as it may be stored, until the user moves the slider.
class StoredThresholdTest : public testing::TestWithParam<std::tuple<double, const char*, int>> {};

TEST_P(StoredThresholdTest, ShowingAValueNeverWritesIt) {
    const auto [stored, shown, position] = GetParam();
    Stage stage;
    stage.platform.defaults.values["bonko.threshold"] = stored;
    BonkoEngine engine;
    int writes = 0;
    stage.platform.defaults.onWrite = [&](const std::string&, const defaults::Object&) { ++writes; };
    ContentView view(engine);
    view.show();
    stage.settle();
    engine.start();
    stage.rest();

    EXPECT_TRUE(showsText(view, shown));
    EXPECT_EQ(find<QSlider>(view, "Sensitivity").value(), position);
    EXPECT_EQ(std::get<double>(*defaults::object("bonko.threshold")), stored);
    EXPECT_EQ(engine.threshold, stored);
    EXPECT_EQ(writes, 0);
}

INSTANTIATE_TEST_SUITE_P(OutsideTheSlider, StoredThresholdTest,
                         testing::Values(std::tuple(3.0, "3.00", 40), std::tuple(0.0, "0.00", 4),
                                         std::tuple(-2.5, "-2.50", 4), std::tuple(1e9, "1000000000.00", 40),
                                         std::tuple(0.123, "0.12", 12), std::tuple(0.4049, "0.40", 40)));

TEST_F(ContentViewTest, AThresholdOfHundredsOfDigitsMovesNothingOutOfTheWindow) {
    engine.threshold = 1e300;
    open();
    EXPECT_EQ(place(startButton(), view).right(), 420 - 20 - 1);
    EXPECT_EQ(place(slider(), view).right(), 420 - 20 - 1);
}

TEST_F(ContentViewTest, FromAStoredValueBeyondItsEndTheSliderWritesItsEnd) {
    engine.threshold = 3.0;
    open();
    press(slider(), Qt::Key_End);
    EXPECT_EQ(engine.threshold, 0.4);
    EXPECT_TRUE(showsText(view, "0.40"));
}

TEST_F(ContentViewTest, WhileRunningTheButtonStopsAndThePillListens) {
    open();
    EXPECT_EQ(tintOf(startButton()), Theme::primaryPink);
    EXPECT_EQ(colorOf(text(view, "Idle")), Theme::current().colors().secondary);

    click(startButton());
    EXPECT_TRUE(engine.isRunning());
    EXPECT_EQ(tintOf(stopButton()), Theme::stopRed);
    EXPECT_EQ(colorOf(text(view, "Listening")), Theme::current().colors().green);
    EXPECT_FALSE(showsText(view, "Idle"));

    click(stopButton());
    EXPECT_FALSE(engine.isRunning());
    EXPECT_EQ(tintOf(startButton()), Theme::primaryPink);
    EXPECT_EQ(colorOf(text(view, "Idle")), Theme::current().colors().secondary);
    EXPECT_FALSE(showsText(view, "Listening"));
}

TEST_F(ContentViewTest, AfterAFailedStartThePillIsIdleBesideTheError) {
    stage.removeSensor();
    open();
    click(startButton());
    EXPECT_TRUE(showsText(view, "Idle"));
    EXPECT_EQ(colorOf(text(view, "Accelerometer device missing on this Mac.")), Theme::current().colors().red);
    EXPECT_EQ(colorOf(text(view, inputMonitoringHint)), Theme::current().colors().secondary);
    EXPECT_FALSE(showsText(view, idleHint));
    EXPECT_TRUE(shows<QPushButton>(view, "Start listening"));
}

TEST_F(ContentViewTest, TheUserStartsAgainAfterAFailure) {
    stage.removeSensor();
    open();
    int pages = 0;
    stage.platform.workspace.onOpen = [&](const std::string&) { ++pages; };
    click(startButton());
    click(startButton());
    EXPECT_EQ(pages, 2);
    stage.connectSensor();
    click(startButton());
    EXPECT_TRUE(engine.isRunning());
    EXPECT_FALSE(showsText(view, inputMonitoringHint));
    EXPECT_TRUE(showsText(view, "Listening with Sexy sounds. Slap away."));
}

TEST_F(ContentViewTest, EveryFailureToOpenTheSensorIsShownInTheEnginesWords) {
    open();
    for (const SensorFailure& failure : sensorFailures) {
        stage.breakSensor(failure);
        click(startButton());
        EXPECT_TRUE(showsText(view, failure.message)) << failure.message;
        EXPECT_TRUE(showsText(view, inputMonitoringHint)) << failure.message;
    }
}

TEST_F(ContentViewTest, AMessageIsShownAsPlainText) {
    stage.removeSensor();
    open();
    click(startButton());
    EXPECT_EQ(text(view, "Accelerometer device missing on this Mac.").textFormat(), Qt::PlainText);
}

TEST_F(ContentViewTest, TheStatusFollowsThePhase) {
    open();
    EXPECT_EQ(colorOf(text(view, idleHint)), Theme::current().colors().secondary);
    EXPECT_FALSE(showsText(view, inputMonitoringHint));
    for (const SoundPack pack : SoundPack::allCases) {
        engine.pack = pack;
        engine.start();
        stage.settle();
        const QString expected = QString("Listening with %1 sounds. Slap away.").arg(pack.title());
        EXPECT_EQ(colorOf(text(view, expected)), Theme::current().colors().secondary);
    }
}

TEST_F(ContentViewTest, WithoutSoundThePickerCannotBeChanged) {
    engine.soundEnabled = false;
    open();
    EXPECT_FALSE(segment("Pain").isEnabled());
    click(segment("Pain"));
    press(segment("Sexy"), Qt::Key_Right);
    EXPECT_EQ(engine.pack, SoundPack::sexy);

    click(startButton());
    EXPECT_TRUE(engine.soundEnabled);
    click(segment("Pain"));
    EXPECT_EQ(engine.pack, SoundPack::pain);
}

TEST_F(ContentViewTest, AFailedStartTurnsTheSoundOnToo) {
    engine.soundEnabled = false;
    stage.removeSensor();
    open();
    click(startButton());
    EXPECT_TRUE(engine.soundEnabled);
    EXPECT_TRUE(segment("Pain").isEnabled());
}

TEST_F(ContentViewTest, StoppingLeavesTheSoundOn) {
    open();
    click(startButton());
    click(stopButton());
    EXPECT_TRUE(engine.soundEnabled);
}

TEST_F(ContentViewTest, ThePickerOffersThePacksInTheirOrder) {
    open();
    QStringList expected;
    for (const SoundPack pack : SoundPack::allCases) expected << pack.title();
    QStringList titles;
    int x = -1;
    for (const QRadioButton* button : view.findChildren<QRadioButton*>()) {
        titles << button->text();
        EXPECT_GT(place(*button, view).x(), x);
        x = place(*button, view).x();
    }
    EXPECT_EQ(titles, expected);
    EXPECT_TRUE(segment("Sexy").isChecked());
}

TEST_F(ContentViewTest, AClickOnASegmentChoosesItsPack) {
    open();
    for (const SoundPack pack : SoundPack::allCases) {
        click(segment(pack.title()));
        EXPECT_EQ(engine.pack, pack);
        EXPECT_EQ(defaults::text("bonko.pack"), pack.rawValue());
    }
}

TEST_F(ContentViewTest, ArrowKeysChooseThePackBeside) {
    open();
    segment("Sexy").setFocus();
    press(segment("Sexy"), Qt::Key_Right);
    EXPECT_EQ(engine.pack, SoundPack::halo);
    press(segment("Halo"), Qt::Key_Left);
    press(segment("Sexy"), Qt::Key_Left);
    EXPECT_EQ(engine.pack, SoundPack::pain);
}

TEST_F(ContentViewTest, ThePickerFollowsTheEngine) {
    open();
    engine.pack = SoundPack::lizard;
    stage.settle();
    EXPECT_TRUE(segment("Lizard").isChecked());
    EXPECT_FALSE(segment("Sexy").isChecked());
}

TEST_F(ContentViewTest, ALongErrorWrapsInsideTheWindow) {
    stage.platform.registry.services.back().openResult = hid::notPermitted;
    open({400, 480});
    const int oneLine = text(view, idleHint).height();
    click(startButton());
    QLabel& message =
        text(view, "Need Input Monitoring permission (System Settings → Privacy & Security). Code -536870174.");
    EXPECT_GE(message.height(), 2 * oneLine);
    EXPECT_EQ(place(message, view).left(), 20);
    EXPECT_LE(place(message, view).right(), 400 - 20);
    EXPECT_GE(message.height(), message.heightForWidth(message.width()));
    EXPECT_GE(place(text(view, inputMonitoringHint), view).top(), place(message, view).bottom() + 8);
}

TEST_F(ContentViewTest, TheViewAsksForNoLessThan400By480) {
    EXPECT_EQ(view.minimumSizeHint(), QSize(400, 480));
    EXPECT_EQ(view.sizeHint().width(), 420);
    EXPECT_EQ(view.maximumSize(), QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
}

TEST_F(ContentViewTest, WhatDoesNotFitScrollsUpAndDownOnly) {
    stage.platform.registry.services.back().openResult = hid::notPermitted;
    open({400, 250});
    click(startButton());
    const auto* area = view.findChild<QScrollArea*>();
    EXPECT_GT(area->verticalScrollBar()->maximum(), 0);
    EXPECT_EQ(area->horizontalScrollBar()->maximum(), 0);
}

TEST_F(ContentViewTest, EverythingStandsInItsPlace) {
    open();
    const auto at = [&](const QWidget& widget) { return place(widget, view); };
    const QRect mode = at(text(view, "MODE"));
    const QRect picker = at(*segment("Pain").parentWidget());
    const QRect label = at(text(view, "Sensitivity"));
    const QRect value = at(text(view, "0.12"));
    const QRect track = at(slider());
    const QRect hint = at(text(view, "Lower detects lighter taps"));
    const QRect button = at(startButton());
    const QRect status = at(text(view, idleHint));
    const auto gap = [](const QRect& above, const QRect& below) { return below.top() - above.bottom() - 1; };

    for (const QRect& rect : {mode, picker, label, track, hint, button, status}) EXPECT_EQ(rect.left(), 20);
    for (const QRect& rect : {picker, value, track, button, status}) EXPECT_EQ(rect.right(), 420 - 20 - 1);
    EXPECT_EQ(gap(mode, picker), 18);
    EXPECT_EQ(gap(picker, label), 18);
    EXPECT_EQ(gap(label, track), 6);
    EXPECT_EQ(gap(track, hint), 6);
    EXPECT_EQ(gap(hint, button), 18);
    EXPECT_EQ(gap(button, status), 18);
    EXPECT_EQ(picker.height(), 24);
    EXPECT_EQ(button.height(), 34 + 2 * 1);
}

TEST_F(ContentViewTest, TheHeaderHoldsLogoTitleAndPill) {
    open();
    const QRect logo = place(picture(view, "Quiverly"), view);
    const QRect title = place(text(view, "Quiverly"), view);
    const QRect subtitle = place(text(view, "Slap → yell."), view);
    const QRect pill = place(text(view, "Idle"), view);
    EXPECT_EQ(logo.size(), QSize(36, 36));
    EXPECT_EQ(logo.left(), 20);
    EXPECT_EQ(title.left(), 20 + 36 + 12);
    EXPECT_EQ(title.top(), 16);
    EXPECT_EQ(subtitle.top(), title.bottom() + 1 + 2);
    EXPECT_EQ(pill.right(), 420 - 20 - 1);
    EXPECT_NEAR(pill.height(), text(view, "Idle").fontMetrics().height() + 2 * 5, 1);
    EXPECT_NEAR(pill.width(), text(view, "Idle").fontMetrics().horizontalAdvance("Idle") + 2 * 10, 1);
    EXPECT_NEAR(pill.center().y(), logo.center().y(), 1);
    EXPECT_EQ(colorAt(view, {210, subtitle.bottom() + 1 + 16}), Theme::current().colors().divider);
}

TEST_F(ContentViewTest, TextsHaveTheFontsOfTheirRoles) {
    open();
    const auto expectFont = [&](const QString& name, int size, QFont::Weight weight) {
        const QFont font = text(view, name).font();
        EXPECT_EQ(font.pixelSize(), size) << name.toStdString();
        EXPECT_EQ(font.weight(), weight) << name.toStdString();
    };
    expectFont("Quiverly", 20, QFont::Bold);
    expectFont("Slap → yell.", 11, QFont::Normal);
    expectFont("Idle", 10, QFont::DemiBold);
    expectFont("MODE", 10, QFont::DemiBold);
    expectFont("Sensitivity", 13, QFont::Normal);
    expectFont("0.12", 13, QFont::Normal);
    expectFont("Lower detects lighter taps", 10, QFont::Medium);
    expectFont(idleHint, 12, QFont::Normal);
    EXPECT_EQ(startButton().font().pixelSize(), 13);
    EXPECT_EQ(startButton().font().weight(), QFont::Bold);
    EXPECT_EQ(QFontInfo(text(view, "Quiverly").font()).family(), "Quicksand");
    const QString system = QFontInfo(QApplication::font()).family();
    EXPECT_NE(system, "Quicksand");
    EXPECT_EQ(QFontInfo(text(view, "Sensitivity").font()).family(), system);
    EXPECT_EQ(QFontInfo(startButton().font()).family(), system);
    EXPECT_NEAR(text(view, "MODE").font().letterSpacing(), 0.6, 0.01);
}

TEST_F(ContentViewTest, TheErrorAndItsHintHaveTheFontsOfTheirRoles) {
    stage.removeSensor();
    open();
    click(startButton());
    EXPECT_EQ(text(view, "Accelerometer device missing on this Mac.").font().pixelSize(), 12);
    EXPECT_EQ(text(view, inputMonitoringHint).font().pixelSize(), 10);
}

TEST_F(ContentViewTest, TheListeningTextHasTheFontOfItsRole) {
    open();
    click(startButton());
    EXPECT_EQ(text(view, "Listening with Sexy sounds. Slap away.").font().pixelSize(), 12);
}

TEST_F(ContentViewTest, TextsHaveTheColorsOfTheirRoles) {
    open();
    const Theme::Colors& colors = Theme::current().colors();
    EXPECT_EQ(colorOf(text(view, "Quiverly")), colors.primary);
    EXPECT_EQ(colorOf(text(view, "Slap → yell.")), colors.secondary);
    EXPECT_EQ(colorOf(text(view, "MODE")), colors.secondary);
    EXPECT_EQ(colorOf(text(view, "Sensitivity")), colors.primary);
    EXPECT_EQ(colorOf(text(view, "Lower detects lighter taps")), colors.tertiary);
}

TEST_F(ContentViewTest, ThePillIsFilledWithItsColorThinned) {
    open();
    const auto expectFill = [&](const QString& word) {
        QLabel& pill = text(view, word);
        const QColor color = colorOf(pill);
        const QColor ground = QApplication::palette().color(QPalette::Window);
        const QColor fill = colorAt(view, place(pill, view).topLeft() + QPoint(pill.width() / 2, 2));
        expectNear(fill, over(color, 0.15, ground));
    };
    expectFill("Idle");
    click(startButton());
    expectFill("Listening");
}

TEST_F(ContentViewTest, ADisabledPickerIsGrey) {
    open();
    const QImage enabled = segment("Sexy").grab().toImage();
    engine.soundEnabled = false;
    stage.settle();
    const QImage disabled = segment("Sexy").grab().toImage();
    EXPECT_NE(enabled, disabled);
    const auto darkest = [](const QImage& picture) {
        int lightness = 255;
        for (int x = 0; x < picture.width(); ++x) {
            for (int y = 0; y < picture.height(); ++y)
                lightness = std::min(lightness, picture.pixelColor(x, y).lightness());
        }
        return lightness;
    };
    EXPECT_GT(darkest(disabled), darkest(enabled) + 50);
}

TEST_F(ContentViewTest, ManyChangesAreShownInOneTurn) {
    open();
    EventCounter events;
    for (int count = 1; count <= 500; ++count) engine.threshold = count / 100.0;
    stage.settle();
    EXPECT_TRUE(showsText(view, "5.00"));
    EXPECT_GT(events.count(QEvent::Paint), 0);
    EXPECT_LE(events.count(QEvent::Paint), 20);
}

TEST_F(ContentViewTest, SamplesThatChangeNothingRepaintNothing) {
    open();
    click(startButton());
    stage.sample(0, 0, 1); // the first sample counts as a slap
    stage.settle();
    EventCounter events;
    const auto before = stage.platform.registry.reportsDelivered();
    for (int count = 0; count < 1000; ++count) stage.sample(0, 0, 1);
    stage.settle();
    EXPECT_EQ(stage.platform.registry.reportsDelivered(), before + 8000);
    EXPECT_EQ(events.count(QEvent::Paint), 0);
    EXPECT_EQ(events.count(QEvent::UpdateRequest), 0);
    EXPECT_EQ(events.count(QEvent::LayoutRequest), 0);
}

TEST_F(ContentViewTest, TheWindowRestsWhileNothingHappens) {
    open();
    EXPECT_EQ(activity(view), QStringList()) << "idle";
    click(startButton());
    EXPECT_EQ(activity(view), QStringList()) << "listening";
    click(stopButton());
    stage.removeSensor();
    click(startButton());
    EXPECT_EQ(activity(view), QStringList()) << "after a failure";
}

TEST_F(ContentViewTest, TheKeyboardReachesEveryControl) {
    open();
    view.activateWindow();
    QStringList reached;
    startButton().setFocus();
    for (int count = 0; count < 3; ++count) {
        QTest::keyClick(&view, Qt::Key_Tab);
        reached << accessibleText(*QApplication::focusWidget());
    }
    EXPECT_EQ(reached, QStringList({"Sexy", "Sensitivity", "Start listening"}));
}

TEST_F(ContentViewTest, TheFocusOfTheKeyboardCanBeSeen) {
    open();
    view.activateWindow();
    for (int count = 0; count < 3; ++count) {
        const QImage before = view.grab().toImage();
        QTest::keyClick(&view, Qt::Key_Tab);
        stage.settle();
        EXPECT_NE(view.grab().toImage(), before) << count;
    }
}

TEST_F(ContentViewTest, TheFocusRingHasItsColorOnPickerAndSlider) {
    open();
    view.activateWindow();
    startButton().setFocus();
    const QColor ring = Theme::current().colors().focus;
    const QColor window = QApplication::palette().color(QPalette::Window);
    const auto expectRing = [&](const QRect& control) {
        const QImage picture = view.grab().toImage();
        const int x = control.center().x();
        EXPECT_EQ(colorAt(picture, {x, control.top() - 4}), window);
        expectSimilar(colorAt(picture, {x, control.top() - 2}), ring);
        EXPECT_NE(colorAt(picture, {x, control.top()}), ring) << "the ring is outside";
        expectSimilar(colorAt(picture, {x, control.bottom() + 3}), ring);
    };
    const auto tab = [&] {
        QTest::keyClick(&view, Qt::Key_Tab);
        stage.settle();
    };
    tab();
    expectRing(place(*segment("Sexy").parentWidget(), view));
    tab();
    const QRect track = place(slider(), view);
    const int handle = track.left() + (track.width() - 19) * (slider().value() - 4) / 36;
    expectRing({handle, track.top() + 1, 19, 19});
    press(slider(), Qt::Key_End);
    expectRing({track.right() - 18, track.top() + 1, 19, 19});
    tab();
    expectRing(place(startButton(), view).adjusted(1, 1, -1, -1));
}

TEST_F(ContentViewTest, OneRingShowsWhereTheKeyboardIs) {
    open();
    view.activateWindow();
    for (int count = 0; count < 3; ++count) {
        QTest::keyClick(&view, Qt::Key_Tab);
        stage.settle();
        EXPECT_EQ(
            std::ranges::count_if(view.findChildren<QWidget*>(),
                                  [](QWidget* child) { return dynamic_cast<FocusRing*>(child) && child->isVisible(); }),
            1)
            << accessibleText(*QApplication::focusWidget()).toStdString();
    }
}

TEST_F(ContentViewTest, AClickTakesTheRingAway) {
    open();
    view.activateWindow();
    startButton().setFocus();
    press(startButton(), Qt::Key_Left);
    EXPECT_TRUE(hasColor(view.grab().toImage(), Theme::current().colors().focus));
    QTest::mousePress(&startButton(), Qt::LeftButton);
    EXPECT_FALSE(hasColor(view.grab().toImage(), Theme::current().colors().focus));
}

TEST_F(ContentViewTest, ControlsAnswerToPointerAndPress) {
    open();
    const auto picture = [](QWidget& control) { return control.grab().toImage(); };
    for (QWidget* control : std::initializer_list<QWidget*>{&startButton(), &segment("Pain"), &slider()}) {
        const QImage atRest = picture(*control);
        control->setAttribute(Qt::WA_UnderMouse);
        const QImage pointedAt = picture(*control);
        EXPECT_NE(pointedAt, atRest) << control->metaObject()->className();
        QTest::mousePress(control, Qt::LeftButton);
        EXPECT_NE(picture(*control), atRest) << control->metaObject()->className();
        EXPECT_NE(picture(*control), pointedAt) << control->metaObject()->className();
        QTest::mouseRelease(control, Qt::LeftButton, {}, {-50, -50});
        control->setAttribute(Qt::WA_UnderMouse, false);
    }
}

TEST_F(ContentViewTest, AnErrorCanBeCopiedAndReachedWithTheKeyboard) {
    stage.removeSensor();
    open();
    view.activateWindow();
    EXPECT_EQ(text(view, idleHint).focusPolicy(), Qt::NoFocus);
    click(startButton());
    startButton().setFocus();
    QTest::keyClick(&view, Qt::Key_Tab);
    QLabel& message = text(view, "Accelerometer device missing on this Mac.");
    ASSERT_EQ(QApplication::focusWidget(), &message);
    QTest::keySequence(&message, QKeySequence::SelectAll);
    QTest::keySequence(&message, QKeySequence::Copy);
    EXPECT_EQ(QApplication::clipboard()->text(), message.text());
    EXPECT_EQ(activity(view), QStringList()) << "no cursor blinks";
    stage.connectSensor();
    click(startButton());
    EXPECT_EQ(text(view, "Listening with Sexy sounds. Slap away.").focusPolicy(), Qt::NoFocus);
}

TEST_F(ContentViewTest, SpaceAndEnterPressTheButton) {
    open();
    startButton().setFocus();
    press(startButton(), Qt::Key_Space);
    EXPECT_TRUE(engine.isRunning());
    press(stopButton(), Qt::Key_Return);
    EXPECT_FALSE(engine.isRunning());
    press(startButton(), Qt::Key_Enter);
    EXPECT_TRUE(engine.isRunning());
}

// What the header of a new main view shows as its logo.
QImage headerPicture(Stage& stage) {
    BonkoEngine engine;
    ContentView view(engine);
    view.resize(420, 560);
    view.show();
    stage.settle();
    QWidget& logo = picture(view, "Quiverly");
    EXPECT_EQ(logo.size(), QSize(36, 36));
    EXPECT_EQ(place(text(view, "Quiverly"), view).left(), 20 + 36 + 12);
    return logo.grab().toImage();
}

TEST(HeaderLogoTest, AnImageIsClippedToARoundedSquare) {
    const TemporaryFolder folder;
    folder.addFile("logo.png", pngPicture(Qt::blue).toStdString());
    Stage stage;
    stage.platform.resources.folders = {folder.path()};
    const QImage logo = headerPicture(stage);
    EXPECT_EQ(colorAt(logo, {18, 18}), QColor(Qt::blue));
    EXPECT_EQ(colorAt(logo, {0, 18}), QColor(Qt::blue));
    EXPECT_EQ(colorAt(logo, {0, 0}), QApplication::palette().color(QPalette::Window));
}

TEST(HeaderLogoTest, WithoutAnImageThePinkHandKeepsTheLayout) {
    Stage stage;
    const QImage logo = headerPicture(stage);
    EXPECT_EQ(colorAt(logo, {18, 24}), Theme::primaryPink);
    EXPECT_NEAR(rowsOf(logo, Theme::primaryPink), 26, 1.5);
    EXPECT_EQ(colorAt(logo, {1, 1}), QApplication::palette().color(QPalette::Window));
}

} // namespace
} // namespace quiverly
