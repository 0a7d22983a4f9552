#include "ui/BonkoApp.h"

#include <gtest/gtest.h>

#include <random>

#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>

#include "support/Screen.h"
#include "support/Stage.h"
#include "support/WindowInspector.h"
#include "ui/ContentView.h"
#include "ui/OnboardingView.h"

namespace quiverly {
namespace {

constexpr char completedKey[] = "bonko.onboardingCompleted";

bool showsOnboarding(BonkoApp& app) {
    return dynamic_cast<OnboardingView*>(WindowInspector::window(app).centralWidget()) != nullptr;
}

bool showsMainView(BonkoApp& app) {
    return dynamic_cast<ContentView*>(WindowInspector::window(app).centralWidget()) != nullptr;
}

void launch(Stage& stage, BonkoApp& app) {
    app.show();
    stage.settle();
}

void click(Stage& stage, BonkoApp& app, const QString& button) {
    QTest::mouseClick(&find<QPushButton>(WindowInspector::window(app), button), Qt::LeftButton);
    stage.settle();
}

// Once the check has settled.
void feelTestSlap(Stage& stage) {
    stage.rest();
    stage.pass(2.0);
    stage.hit(0.5);
}

// From the first launch through the test slap and Continue.
void passOnboarding(Stage& stage, BonkoApp& app) {
    launch(stage, app);
    feelTestSlap(stage);
    click(stage, app, "Continue");
}

qsizetype visibleWindows() {
    return std::ranges::count_if(QApplication::topLevelWidgets(), [](const QWidget* w) { return w->isVisible(); });
}

TEST(BonkoAppTest, TheFirstLaunchShowsTheOnboardingView) {
    Stage stage;
    BonkoApp app;
    launch(stage, app);
    EXPECT_TRUE(showsOnboarding(app));
    EXPECT_EQ(WindowInspector::window(app).windowTitle(), "Quiverly");
    EXPECT_EQ(WindowInspector::window(app).size(), QSize(420, 560));
    EXPECT_EQ(visibleWindows(), 1);
    EXPECT_TRUE(defaults::object(completedKey) == std::nullopt);
}

TEST(BonkoAppTest, BuildingTheApplicationOpensNoSensor) {
    Stage stage;
    BonkoApp app;
    stage.settle();
    EXPECT_FALSE(stage.platform.registry.deviceIsOpen());
}

TEST(BonkoAppTest, TheMainViewTakesThePlaceInTheSameWindow) {
    Stage stage;
    BonkoApp app;
    launch(stage, app);
    const WId window = WindowInspector::window(app).winId();
    passOnboarding(stage, app);
    EXPECT_TRUE(showsMainView(app));
    EXPECT_EQ(WindowInspector::window(app).winId(), window);
    EXPECT_EQ(WindowInspector::window(app).size(), QSize(420, 560));
    EXPECT_EQ(visibleWindows(), 1);
    EXPECT_TRUE(showsText(WindowInspector::window(app), "Idle"));
    EXPECT_TRUE(find<QRadioButton>(WindowInspector::window(app), "Sexy").isEnabled()) << "the sound is on";
}

TEST(BonkoAppTest, BothViewsShareOneEngine) {
    Stage stage;
    BonkoApp app;
    passOnboarding(stage, app);
    EXPECT_TRUE(showsText(WindowInspector::window(app), "Slaps this session: 1  ·  last 0.500g"));
}

TEST(BonkoAppTest, TheMainViewFindsTheEngineStoppedOutOfTheCheck) {
    Stage stage;
    BonkoApp app;
    passOnboarding(stage, app);
    BonkoEngine& engine = WindowInspector::engine(app);
    EXPECT_FALSE(engine.isRunning());
    EXPECT_FALSE(Inspector::onboardingMode(engine));
    EXPECT_EQ(Inspector::detector(engine).threshold, 0.12);
    EXPECT_TRUE(engine.soundEnabled);
}

TEST(BonkoAppTest, LaterLaunchesOpenOnTheMainView) {
    Stage stage;
    {
        BonkoApp app;
        passOnboarding(stage, app);
    }
    BonkoApp app;
    launch(stage, app);
    EXPECT_TRUE(showsMainView(app));
    EXPECT_TRUE(WindowInspector::engine(app).soundEnabled);
}

TEST(BonkoAppTest, WithoutContinueTheNextLaunchShowsTheOnboardingViewAgain) {
    Stage stage;
    {
        BonkoApp app;
        launch(stage, app);
        stage.pass(2.0);
        stage.hit(0.5);
    }
    BonkoApp app;
    EXPECT_TRUE(showsOnboarding(app));
}

TEST(BonkoAppTest, AnUnusableRecordOfCompletionCountsAsNone) {
    for (const defaults::Object& stored :
         {defaults::Object(0.0), defaults::Object("1"), defaults::Object(defaults::OtherObject{})}) {
        Stage stage;
        stage.platform.defaults.values[completedKey] = stored;
        BonkoApp app;
        EXPECT_TRUE(showsOnboarding(app));
    }
}

TEST(BonkoAppTest, AStoreThatLosesTheRecordDoesNotTakeTheMainViewAway) {
    Stage stage;
    BonkoApp app;
    passOnboarding(stage, app);
    stage.platform.defaults.values.clear();
    WindowInspector::window(app).close();
    launch(stage, app);
    EXPECT_TRUE(showsMainView(app));
}

TEST(BonkoAppTest, SettingsAreKeptForTheNextLaunch) {
    Stage stage;
    {
        BonkoApp app;
        passOnboarding(stage, app);
        QTest::mouseClick(&find<QRadioButton>(WindowInspector::window(app), "Lizard"), Qt::LeftButton);
        QTest::keyClick(&find<QSlider>(WindowInspector::window(app), "Sensitivity"), Qt::Key_Right);
    }
    BonkoApp app;
    launch(stage, app);
    EXPECT_TRUE(find<QRadioButton>(WindowInspector::window(app), "Lizard").isChecked());
    EXPECT_TRUE(showsText(WindowInspector::window(app), "0.13"));
}

TEST(BonkoAppTest, TheWindowKeepsToTheSizesOfItsContent) {
    Stage stage;
    BonkoApp app;
    launch(stage, app);
    QMainWindow& window = WindowInspector::window(app);
    window.resize(1000, 1000);
    EXPECT_EQ(window.size(), QSize(420, 560));
    window.resize(10, 10);
    EXPECT_EQ(window.size(), QSize(420, 560));

    passOnboarding(stage, app);
    window.resize(10, 10);
    EXPECT_EQ(window.size(), QSize(400, 480));
    window.resize(1000, 900);
    EXPECT_EQ(window.size(), QSize(1000, 900));
}

TEST(BonkoAppTest, TheLeastSizeGrowsWithTheTexts) {
    const QFont former = QApplication::font();
    Stage stage;
    BonkoApp app;
    passOnboarding(stage, app);
    click(stage, app, "Start listening");
    QFont large = former;
    large.setPointSizeF(25);
    QApplication::setFont(large);
    stage.settle();
    QMainWindow& window = WindowInspector::window(app);
    window.resize(10, 10);
    stage.settle();
    EXPECT_GT(window.width(), 400);
    for (const char* name : {"Quiverly", "Listening", "Sensitivity", "Lower detects lighter taps"}) {
        const QLabel& label = text(window, name);
        EXPECT_GE(label.width(), label.sizeHint().width()) << name;
        EXPECT_LE(place(label, window).right(), window.width()) << name;
    }
    for (const QRadioButton* segment : window.findChildren<QRadioButton*>()) {
        EXPECT_LE(place(*segment, window).right(), window.width() - 20) << segment->text().toStdString();
    }
    QApplication::setFont(former);
    stage.settle();
    window.resize(10, 10);
    EXPECT_EQ(window.size(), QSize(400, 480));
}

TEST(BonkoAppTest, ThereIsNoCommandForANewWindow) {
    Stage stage;
    BonkoApp app;
    passOnboarding(stage, app);
    for (const Qt::KeyboardModifiers modifiers :
         {Qt::KeyboardModifiers(Qt::ControlModifier), Qt::ControlModifier | Qt::ShiftModifier}) {
        QTest::keyClick(&WindowInspector::window(app), Qt::Key_N, modifiers);
        stage.settle();
    }
    EXPECT_EQ(visibleWindows(), 1);
    EXPECT_TRUE(WindowInspector::window(app).findChildren<QMenuBar*>().isEmpty());
    EXPECT_TRUE(WindowInspector::window(app).findChildren<QAction*>().isEmpty());
}

TEST(BonkoAppTest, ReopeningTheWindowTurnsTheSoundOnAgain) {
    Stage stage;
    BonkoApp app;
    passOnboarding(stage, app);
    WindowInspector::window(app).close();
    WindowInspector::engine(app).soundEnabled = false;
    launch(stage, app);
    EXPECT_TRUE(WindowInspector::engine(app).soundEnabled);
    EXPECT_TRUE(find<QRadioButton>(WindowInspector::window(app), "Sexy").isEnabled());
}

TEST(BonkoAppTest, ClosingTheMainViewDoesNotStopTheEngine) {
    Stage stage;
    BonkoApp app;
    passOnboarding(stage, app);
    click(stage, app, "Start listening");
    WindowInspector::window(app).close();
    stage.settle();
    EXPECT_TRUE(WindowInspector::engine(app).isRunning());
    launch(stage, app);
    EXPECT_TRUE(showsText(WindowInspector::window(app), "Listening"));
}

TEST(BonkoAppTest, ClosingTheWindowDuringTheCheckStopsIt) {
    Stage stage;
    BonkoApp app;
    launch(stage, app);
    WindowInspector::window(app).close();
    EXPECT_FALSE(WindowInspector::engine(app).isRunning());
    EXPECT_FALSE(Inspector::onboardingMode(WindowInspector::engine(app)));
    launch(stage, app);
    EXPECT_TRUE(WindowInspector::engine(app).isRunning());
    EXPECT_TRUE(showsText(WindowInspector::window(app), "Looking for accelerometer…"));
}

TEST(BonkoAppTest, AMinimisedWindowHasNotDisappeared) {
    Stage stage;
    BonkoApp app;
    launch(stage, app);
    stage.pass(0.6);
    QWidget* view = WindowInspector::window(app).centralWidget();
    QHideEvent minimised;
    QSpontaneKeyEvent::setSpontaneous(&minimised);
    qApp->notify(view, &minimised);
    EXPECT_TRUE(WindowInspector::engine(app).isRunning());
    QShowEvent restored;
    QSpontaneKeyEvent::setSpontaneous(&restored);
    qApp->notify(view, &restored);
    stage.settle();
    EXPECT_TRUE(showsText(WindowInspector::window(app), "Accelerometer detected"));
}

TEST(BonkoAppTest, ShowingAgainBringsAMinimisedWindowBack) {
    Stage stage;
    BonkoApp app;
    launch(stage, app);
    WindowInspector::window(app).showMinimized();
    stage.settle();
    launch(stage, app);
    EXPECT_FALSE(WindowInspector::window(app).isMinimized());
    EXPECT_TRUE(WindowInspector::window(app).isVisible());
}

TEST(BonkoAppTest, TheWindowCanBeClosedAndReopenedInEveryState) {
    constexpr char looking[] = "Looking for accelerometer…";
    constexpr char missing[] = "Accelerometer device missing on this Mac.";
    Stage stage;
    BonkoApp app;
    const auto expectAfterReopening = [&](const char* shown) {
        WindowInspector::window(app).close();
        stage.settle();
        launch(stage, app);
        EXPECT_TRUE(showsText(WindowInspector::window(app), shown)) << shown;
    };
    launch(stage, app);
    expectAfterReopening(looking);
    stage.pass(0.6); // the accelerometer is detected
    expectAfterReopening(looking);
    stage.removeSensor();
    expectAfterReopening(missing);
    stage.pass(0.6);
    expectAfterReopening(missing);
    stage.connectSensor();
    expectAfterReopening(looking);
    feelTestSlap(stage);
    ASSERT_TRUE(showsText(WindowInspector::window(app), "Motion check passed"));
    expectAfterReopening(looking);
    feelTestSlap(stage);
    click(stage, app, "Continue");
    expectAfterReopening("Idle");
    click(stage, app, "Start listening");
    expectAfterReopening("Listening");
    click(stage, app, "Stop");
    stage.removeSensor();
    click(stage, app, "Start listening");
    expectAfterReopening(missing);
}

// Whatever has happened, the window shows what the engine is at.
void expectTheTruth(BonkoApp& app) {
    BonkoEngine& engine = WindowInspector::engine(app);
    QMainWindow& window = WindowInspector::window(app);
    if (showsMainView(app)) {
        EXPECT_TRUE(showsText(window, engine.isRunning() ? "Listening" : "Idle"));
        EXPECT_EQ(
            showsText(window, QString::asprintf("Slaps this session: %lld  ·  last %.3fg",
                                                static_cast<long long>(engine.slapCount), engine.lastAmplitude.get())),
            engine.slapCount > 0);
        EXPECT_FALSE(Inspector::onboardingMode(engine));
    } else if (!window.isVisible()) {
        EXPECT_FALSE(engine.isRunning());
        EXPECT_FALSE(Inspector::onboardingMode(engine));
    } else {
        EXPECT_NE(Inspector::onboardingMode(engine), shows<QPushButton>(window, "Continue"));
    }
}

// Slaps, time, closing, reopening, Continue, the button and the sensor's coming and going, in orders drawn by chance.
class AnyOrderTest : public testing::TestWithParam<unsigned> {};

TEST_P(AnyOrderTest, TheWindowTellsTheTruth) {
    std::mt19937 random(GetParam());
    Stage stage;
    BonkoApp app;
    BonkoEngine& engine = WindowInspector::engine(app);
    QMainWindow& window = WindowInspector::window(app);
    const auto clickIfThere = [&](const QString& button) {
        if (window.isVisible() && shows<QPushButton>(window, button)) click(stage, app, button);
    };
    const std::vector<std::function<void()>> acts = {
        [&] { stage.slap(engine, 0.5); }, [&] { stage.hit(0.4); },           [&] { stage.pass(0.3); },
        [&] { stage.pass(2.0); },         [&] { window.close(); },           [&] { app.show(); },
        [&] { launch(stage, app); },      [&] { clickIfThere("Continue"); }, [&] { clickIfThere("Start listening"); },
        [&] { clickIfThere("Stop"); },    [&] { stage.removeSensor(); },     [&] { stage.connectSensor(); },
    };
    std::uniform_int_distribution<std::size_t> choice(0, acts.size() - 1);
    for (int act = 0; act < 40; ++act) {
        acts[choice(random)]();
        stage.settle();
        expectTheTruth(app);
    }
}

// Every order of what may happen to a check.
TEST(BonkoAppTest, WhateverTheOrderTheWindowTellsTheTruth) {
    std::array<int, 5> order{0, 1, 2, 3, 4};
    do {
        SCOPED_TRACE(testing::PrintToString(order));
        Stage stage;
        BonkoApp app;
        launch(stage, app);
        stage.platform.calendar.advance(std::chrono::seconds(2)); // the settling time, while the verdict is held up
        const std::array<std::function<void()>, 5> acts = {
            [&] { stage.slap(WindowInspector::engine(app), 0.5); },
            [&] { stage.pass(0.6); },
            [&] { WindowInspector::window(app).close(); },
            [&] { launch(stage, app); },
            [&] {
                if (WindowInspector::window(app).isVisible() &&
                    shows<QPushButton>(WindowInspector::window(app), "Continue")) {
                    click(stage, app, "Continue");
                }
            },
        };
        for (const int act : order) {
            acts[static_cast<std::size_t>(act)]();
            stage.settle();
            expectTheTruth(app);
        }
    } while (std::ranges::next_permutation(order).found);
}

INSTANTIATE_TEST_SUITE_P(Seeds, AnyOrderTest, testing::Range(0U, 40U));

} // namespace
} // namespace quiverly
