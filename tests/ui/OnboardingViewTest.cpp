#include "ui/OnboardingView.h"

#include <gtest/gtest.h>

#include <vector>

#include <QApplication>
#include <QClipboard>
#include <QPointer>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QVariantAnimation>

#include "support/Activity.h"
#include "support/PngPicture.h"
#include "support/Screen.h"
#include "support/Stage.h"
#include "support/TemporaryFolder.h"
#include "support/sensor_texts.h"
#include "ui/Theme.h"

namespace quiverly {
namespace {

constexpr char volume[] = "Turn volume down if you’re in public — the test slap plays a sexy sound.";
constexpr char prompt[] = "Slap your MacBook to test — you’ll hear a sexy clip!";
constexpr char accelerometerOK[] = "Accelerometer OK — you’re good to go!";
constexpr char motionOK[] = "Motion check passed";

// Holds what begins to fade at its beginning, however late the test looks.
class HeldFades : public QObject {
public:
    HeldFades() { qApp->installEventFilter(this); }

    void release() {
        for (const auto& fade : held) {
            if (fade) fade->resume();
        }
    }

private:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() != QEvent::ChildPolished) return false;
        for (auto* fade : static_cast<QChildEvent*>(event)->child()->findChildren<QVariantAnimation*>()) {
            fade->pause();
            held.emplace_back(fade);
        }
        return false;
    }

    std::vector<QPointer<QVariantAnimation>> held;
};

class OnboardingViewTest : public testing::Test {
protected:
    ~OnboardingViewTest() override { view.hide(); }

    void open() {
        view.show();
        stage.settle();
    }

    // Past the settling time of the check: a slap counts now.
    void openAndWait() {
        open();
        stage.rest();
        stage.pass(2.0);
    }

    void awaitEndOfAnimation() {
        ASSERT_TRUE(QTest::qWaitFor([&] { return view.findChildren<QVariantAnimation*>().isEmpty(); }, 60'000));
    }

    // The icon on the line with that text.
    QString iconOf(const QString& line) {
        for (QWidget* child : text(view, line).parentWidget()->findChildren<QWidget*>()) {
            const bool isPicture = describe(*child).role() == QAccessible::Graphic;
            if (isPicture && child->isVisibleTo(&view) && !accessibleText(*child).isEmpty())
                return accessibleText(*child);
        }
        return {};
    }

    QStringList lines() {
        QStringList shown;
        for (const QLabel* label : text(view, "Hardware check").parentWidget()->findChildren<QLabel*>()) {
            if (label->isVisibleTo(&view) && label->text() != "Hardware check") shown << label->text();
        }
        return shown;
    }

    Stage stage;
    BonkoEngine engine;
    OnboardingView view{engine};
};

TEST_F(OnboardingViewTest, AppearingBeginsTheCheck) {
    EXPECT_FALSE(engine.isRunning());
    open();
    EXPECT_TRUE(engine.isRunning());
    EXPECT_TRUE(stage.sensorIsOpen());
    EXPECT_FALSE(engine.soundEnabled);
    EXPECT_EQ(lines(), QStringList({looking, volume}));
    EXPECT_EQ(iconOf(looking), "Working");
    EXPECT_EQ(iconOf(volume), "Warning");
    EXPECT_TRUE(showsPicture(view, "Step 1"));
    EXPECT_FALSE(shows<QPushButton>(view, "Continue"));
}

TEST_F(OnboardingViewTest, BeforeTheVerdictTheSpinnerTurnsThoughTheSensorDelivers) {
    open();
    for (int count = 0; count < 100; ++count) stage.sample(0, 0, 1);
    stage.pass(0.599);
    EXPECT_EQ(lines(), QStringList({looking, volume}));
    EXPECT_EQ(iconOf(looking), "Working");
}

TEST_F(OnboardingViewTest, TheVerdictComesAfterSixTenthsOfASecond) {
    open();
    stage.pass(0.6);
    EXPECT_EQ(lines(), QStringList({detected, volume, prompt}));
    EXPECT_EQ(iconOf(detected), "Done");
    EXPECT_EQ(iconOf(prompt), "Slap now");
    EXPECT_EQ(colorOf(text(view, detected)), Theme::current().colors().primary);
    EXPECT_EQ(colorOf(text(view, prompt)), Theme::current().colors().primary);
}

TEST_F(OnboardingViewTest, WithoutASensorTheEnginesErrorIsShownInOrange) {
    stage.removeSensor();
    open();
    const auto expectFailure = [&] {
        EXPECT_EQ(lines(), QStringList({missing, volume}));
        EXPECT_EQ(iconOf(missing), "Warning");
        EXPECT_EQ(colorOf(text(view, missing)), Theme::current().colors().orange);
        EXPECT_TRUE(showsPicture(view, "Step 1"));
        EXPECT_FALSE(shows<QPushButton>(view, "Continue"));
    };
    expectFailure();
    stage.pass(0.6);
    expectFailure();
    stage.pass(60);
    expectFailure();
}

TEST_F(OnboardingViewTest, TheVolumeWarningIsOrangeInEveryStateOfTheFirstStep) {
    const auto expectWarning = [&] {
        EXPECT_EQ(iconOf(volume), "Warning");
        EXPECT_EQ(colorOf(text(view, volume)), Theme::current().colors().orange);
    };
    open();
    expectWarning();
    stage.pass(0.6);
    expectWarning();
    view.hide();
    stage.removeSensor();
    open();
    expectWarning();
    stage.pass(0.6);
    expectWarning();
}

TEST_F(OnboardingViewTest, ATestSlapCompletesTheCheck) {
    openAndWait();
    stage.slap(0.5);
    EXPECT_EQ(engine.slapCount, 1);
    EXPECT_EQ(lines(), QStringList({accelerometerOK, motionOK}));
    EXPECT_EQ(iconOf(accelerometerOK), "Done");
    EXPECT_EQ(iconOf(motionOK), "Done");
    EXPECT_TRUE(showsPicture(view, "Step 1, done"));
    EXPECT_TRUE(shows<QPushButton>(view, "Continue"));
    EXPECT_FALSE(engine.soundEnabled);
    EXPECT_TRUE(engine.isRunning());
    stage.slap(0.15);
    EXPECT_EQ(engine.slapCount, 2) << "too soft for a check, so there is none any more";
}

TEST_F(OnboardingViewTest, TheTestSlapTurnsTheSoundOff) {
    openAndWait();
    engine.soundEnabled = true;
    stage.slap(0.5);
    EXPECT_FALSE(engine.soundEnabled);
}

TEST_F(OnboardingViewTest, TwoQuickSlapsCountOnce) {
    openAndWait();
    int changes = 0;
    const auto subscription = engine.soundEnabled.willChange.subscribe([&] { ++changes; });
    stage.slap(0.5);
    stage.slap(0.5);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(engine.slapCount, 2);
    EXPECT_EQ(lines(), QStringList({accelerometerOK, motionOK}));
}

TEST_F(OnboardingViewTest, ASlapBeforeTheVerdictCompletesTheCheck) {
    open();
    stage.rest();
    stage.platform.calendar.advance(std::chrono::seconds(2)); // past the settling time, before the verdict
    stage.slap(0.5);
    EXPECT_EQ(lines(), QStringList({accelerometerOK, motionOK}));
    stage.pass(0.6);
    EXPECT_EQ(lines(), QStringList({accelerometerOK, motionOK}));
}

TEST_F(OnboardingViewTest, SlapsDuringTheSettlingTimeDoNotCount) {
    open();
    stage.rest();
    stage.pass(0.9);
    stage.slap(0.9);
    EXPECT_EQ(lines(), QStringList({detected, volume, prompt})) << "1.9 seconds after the start";
    EXPECT_EQ(engine.slapCount, 0);
}

TEST_F(OnboardingViewTest, TheCompleteStepShowsAWhiteCheckOnPink) {
    openAndWait();
    stage.slap(0.5);
    awaitEndOfAnimation();
    QWidget& badge = picture(view, "Step 1, done");
    EXPECT_EQ(badge.size(), QSize(28, 28));
    EXPECT_EQ(colorAt(badge, {4, 14}), Theme::primaryPink);
    EXPECT_EQ(colorAt(badge, {12, 17}), QColor(Qt::white));
}

TEST_F(OnboardingViewTest, TheStepFadesOver) {
    openAndWait();
    stage.platform.mainQueue.drain();
    const QImage before = view.grab().toImage();
    HeldFades fades;
    stage.slap(0.5);
    const QImage during = view.grab().toImage();
    fades.release();
    awaitEndOfAnimation();
    const QImage after = view.grab().toImage();
    EXPECT_NE(before, after);
    EXPECT_NE(during, after);
}

TEST_F(OnboardingViewTest, TheWindowRestsUnlessItLooksForTheSensor) {
    open();
    EXPECT_NE(activity(view), QStringList()) << "the spinner turns";
    openAndWait();
    EXPECT_EQ(activity(view), QStringList()) << "waiting for the slap";
    stage.slap(0.5);
    awaitEndOfAnimation();
    EXPECT_EQ(activity(view), QStringList()) << "complete";
}

TEST_F(OnboardingViewTest, TheWindowRestsWhenTheCheckHasFailed) {
    stage.removeSensor();
    openAndWait();
    EXPECT_EQ(activity(view), QStringList());
}

TEST_F(OnboardingViewTest, LeavingWhileTheCheckRunsEndsItAndStopsTheEngine) {
    open();
    view.hide();
    EXPECT_FALSE(engine.isRunning());
    EXPECT_FALSE(stage.sensorIsOpen());
    stage.pass(2.0);
    EXPECT_EQ(lines(), QStringList({looking, volume})) << "what it shows is settled when it appears again";
    engine.start();
    stage.rest();
    stage.slap(0.15);
    EXPECT_EQ(engine.slapCount, 2) << "too soft for a check, so there is none any more";
    EXPECT_EQ(lines(), QStringList({looking, volume}));
}

TEST_F(OnboardingViewTest, LeavingStopsTheEngineInEveryState) {
    const std::vector<std::function<void()>> states = {
        [&] {},
        [&] { stage.pass(0.6); },
        [&] {
            stage.rest();
            stage.pass(2.0);
            stage.slap(0.5);
        },
        [&] {
            view.hide();
            stage.removeSensor();
            open();
        },
        [&] { stage.pass(0.6); },
    };
    for (const auto& reach : states) {
        open();
        reach();
        view.hide();
        stage.settle();
        EXPECT_EQ(engine.phase.get(), BonkoEngine::Phase{});
        EXPECT_FALSE(stage.sensorIsOpen());
    }
}

TEST_F(OnboardingViewTest, AppearingAgainStartsAfresh) {
    openAndWait();
    stage.slap(0.5);
    view.hide();
    open();
    EXPECT_EQ(lines(), QStringList({looking, volume}));
    EXPECT_FALSE(shows<QPushButton>(view, "Continue"));
    stage.pass(0.6);
    EXPECT_EQ(lines(), QStringList({detected, volume, prompt}));
}

TEST_F(OnboardingViewTest, AVerdictComesThoughTheViewWentAwayAndCameBack) {
    open();
    stage.pass(0.5);
    view.hide();
    open();
    stage.pass(0.099);
    EXPECT_EQ(lines(), QStringList({looking, volume}));
    stage.pass(0.001);
    EXPECT_EQ(lines(), QStringList({detected, volume, prompt}));
    stage.pass(0.5);
    EXPECT_EQ(lines(), QStringList({detected, volume, prompt}));
}

TEST_F(OnboardingViewTest, AVerdictAfterTheViewIsGoneIsHarmless) {
    {
        OnboardingView second(engine);
        second.show();
        stage.settle();
        second.hide();
    }
    stage.pass(0.6);
    EXPECT_FALSE(engine.isRunning());
}

TEST_F(OnboardingViewTest, AFailedCheckSucceedsWhenTheViewAppearsAgain) {
    stage.removeSensor();
    open();
    stage.pass(0.6);
    stage.connectSensor();
    stage.pass(60);
    EXPECT_EQ(lines(), QStringList({missing, volume}));
    view.hide();
    open();
    stage.pass(0.6);
    EXPECT_EQ(lines(), QStringList({detected, volume, prompt}));
}

TEST_F(OnboardingViewTest, AnEngineThatStopsAfterTheVerdictIsNotJudgedAgain) {
    open();
    stage.pass(0.6);
    engine.stop();
    stage.pass(60);
    EXPECT_EQ(lines(), QStringList({detected, volume, prompt}));
}

TEST_F(OnboardingViewTest, AnEngineThatHasStoppedAtTheVerdictIsStillLookedFor) {
    open();
    engine.stop();
    stage.pass(0.6);
    EXPECT_EQ(lines(), QStringList({looking, volume}));
}

TEST_F(OnboardingViewTest, EveryFailureToOpenTheSensorIsShownInTheEnginesWords) {
    for (const SensorFailure& failure : sensorFailures) {
        stage.breakSensor(failure);
        open();
        stage.pass(0.6);
        EXPECT_EQ(lines(), QStringList({failure.message, volume}));
        view.hide();
    }
}

TEST_F(OnboardingViewTest, ContinueIsReported) {
    int continued = 0;
    view.onContinue = [&] { ++continued; };
    openAndWait();
    stage.slap(0.5);
    awaitEndOfAnimation();
    QTest::mouseClick(&find<QPushButton>(view, "Continue"), Qt::LeftButton);
    EXPECT_EQ(continued, 1);
}

TEST_F(OnboardingViewTest, ContinueCanBeClickedWhileTheStepFades) {
    int continued = 0;
    view.onContinue = [&] { ++continued; };
    openAndWait();
    stage.slap(0.5);
    QPushButton& button = find<QPushButton>(view, "Continue");
    QWidget* under = view.childAt(place(button, view).center());
    ASSERT_EQ(under, &button);
    QTest::mouseClick(under, Qt::LeftButton);
    EXPECT_EQ(continued, 1);
}

TEST_F(OnboardingViewTest, ContinueHasTheFocusAndEnterPressesItFromAnywhere) {
    int continued = 0;
    view.onContinue = [&] { ++continued; };
    view.activateWindow();
    openAndWait();
    QTest::keyClick(&view, Qt::Key_Return);
    EXPECT_EQ(continued, 0) << "there is nothing to continue yet";
    stage.slap(0.5);
    QPushButton& button = find<QPushButton>(view, "Continue");
    EXPECT_EQ(QApplication::focusWidget(), &button);
    QTest::keyClick(&button, Qt::Key_Return);
    EXPECT_EQ(continued, 1);
    QTest::keyClick(&view, Qt::Key_Enter);
    EXPECT_EQ(continued, 2);
}

TEST_F(OnboardingViewTest, AnErrorCanBeCopied) {
    stage.removeSensor();
    open();
    view.activateWindow();
    QLabel& message = text(view, missing);
    message.setFocus();
    QTest::keySequence(&message, QKeySequence::SelectAll);
    QTest::keySequence(&message, QKeySequence::Copy);
    EXPECT_EQ(QApplication::clipboard()->text(), missing);
    EXPECT_EQ(text(view, volume).textInteractionFlags(), Qt::NoTextInteraction);
}

TEST_F(OnboardingViewTest, TheRingAroundAnErrorIsWhole) {
    stage.removeSensor();
    open();
    view.activateWindow();
    QLabel& message = text(view, missing);
    message.setFocus();
    QTest::keyClick(&message, Qt::Key_Right);
    stage.settle();
    const QImage picture = view.grab().toImage();
    const QRect inside = place(message, view);
    const QColor ring = Theme::current().colors().focus;
    const QPoint middle = inside.center();
    expectSimilar(colorAt(picture, {middle.x(), inside.top() - 2}), ring);
    expectSimilar(colorAt(picture, {middle.x(), inside.bottom() + 3}), ring);
    expectSimilar(colorAt(picture, {inside.left() - 2, middle.y()}), ring);
    expectSimilar(colorAt(picture, {inside.right() + 3, middle.y()}), ring);
}

TEST_F(OnboardingViewTest, EverythingStandsInItsPlace) {
    open();
    stage.pass(0.6);
    const auto at = [&](const QWidget& widget) { return place(widget, view); };
    const auto gap = [](const QRect& above, const QRect& below) { return below.top() - above.bottom() - 1; };
    const QRect logo = at(picture(view, "Quiverly"));
    const QRect title = at(text(view, "Welcome to Quiverly"));
    const QRect subtitle = at(text(view, "Slap your MacBook. It has feelings, and it will tell you."));
    const QRect badge = at(picture(view, "Step 1"));
    const QRect step = at(text(view, "Hardware check"));
    const QRect first = at(*text(view, detected).parentWidget());
    const QRect second = at(*text(view, volume).parentWidget());
    const QRect third = at(*text(view, prompt).parentWidget());

    EXPECT_EQ(view.minimumSize(), QSize(420, 560));
    EXPECT_EQ(view.maximumSize(), QSize(420, 560));
    EXPECT_EQ(logo, QRect((420 - 72) / 2, 28 + 8, 72, 72));
    EXPECT_EQ(gap(logo, title), 10);
    EXPECT_EQ(gap(title, subtitle), 10);
    EXPECT_EQ(gap(subtitle, badge), 28);
    EXPECT_EQ(badge.left(), 28);
    EXPECT_EQ(badge.size(), QSize(28, 28));
    EXPECT_EQ(step.left(), 28 + 28 + 14);
    EXPECT_EQ(step.top(), badge.top());
    EXPECT_EQ(gap(step, first), 4 + 8);
    EXPECT_EQ(gap(first, second), 10);
    EXPECT_EQ(gap(second, third), 10);
    EXPECT_EQ(at(text(view, volume)).left() - second.left(), 16 + 8);
    EXPECT_EQ(second.right(), 420 - 28 - 1);
    EXPECT_EQ(text(view, "Welcome to Quiverly").font().pixelSize(), 24);
    EXPECT_EQ(QFontInfo(text(view, "Welcome to Quiverly").font()).family(), "Quicksand");
    QLabel& invitation = text(view, "Slap your MacBook. It has feelings, and it will tell you.");
    EXPECT_EQ(invitation.font().pixelSize(), 12);
    EXPECT_TRUE(invitation.alignment() & Qt::AlignHCenter);
    EXPECT_EQ(colorOf(invitation), Theme::current().colors().secondary);
    EXPECT_EQ(text(view, detected).font().pixelSize(), 12);
    EXPECT_EQ(text(view, "Hardware check").font().weight(), QFont::Bold);
}

TEST_F(OnboardingViewTest, LinesWrapRatherThanBeingCut) {
    open();
    QLabel& warning = text(view, volume);
    EXPECT_GE(warning.height(), 2 * warning.fontMetrics().height());
    EXPECT_GE(warning.height(), warning.heightForWidth(warning.width()));
}

// What a new onboarding view shows as its logo.
QImage welcomePicture(Stage& stage) {
    BonkoEngine engine;
    OnboardingView view(engine);
    view.show();
    stage.settle();
    QWidget& logo = picture(view, "Quiverly");
    EXPECT_EQ(place(logo, view), QRect((420 - 72) / 2, 28 + 8, 72, 72));
    const QRect around = place(logo, view).adjusted(-16, -16, 16, 20);
    QImage grabbed = view.grab(around).toImage();
    view.hide();
    return grabbed;
}

TEST(WelcomeLogoTest, AnImageIsARoundedSquareWithAPinkShadow) {
    const TemporaryFolder folder;
    folder.addFile("AppIcon.icns", pngPicture(Qt::blue).toStdString());
    Stage stage;
    stage.platform.resources.folders = {folder.path()};
    const QImage picture = welcomePicture(stage);
    const QColor window = QApplication::palette().color(QPalette::Window);
    EXPECT_EQ(colorAt(picture, {16 + 36, 16 + 36}), QColor(Qt::blue));
    EXPECT_EQ(colorAt(picture, {16, 16 + 36}), QColor(Qt::blue));
    EXPECT_NE(colorAt(picture, {16 + 1, 16 + 1}), QColor(Qt::blue)) << "the corners are clipped";
    EXPECT_EQ(colorAt(picture, {16 + 36, 1}), window) << "12 pixels of blur, 4 below";
    const QColor below = colorAt(picture, {16 + 36, 16 + 72 + 2});
    EXPECT_GT(below.red() - below.green(), 20) << "pink";
    EXPECT_EQ(colorAt(picture, {16 + 36, 16 + 72 + 18}), window);
}

TEST(WelcomeLogoTest, WithoutAnImageThereIsThePinkHand) {
    Stage stage;
    const QImage picture = welcomePicture(stage);
    EXPECT_EQ(colorAt(picture, {16 + 36, 16 + 46}), Theme::primaryPink);
    EXPECT_NEAR(rowsOf(picture, Theme::primaryPink), 44, 1.5);
}

} // namespace
} // namespace quiverly
