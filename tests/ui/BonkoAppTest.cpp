#include "ui/BonkoApp.h"

#include <gtest/gtest.h>

#include <array>
#include <random>

#include <QAction>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>

#include "support/Screen.h"
#include "support/Stage.h"
#include "support/TemporaryFolder.h"
#include "support/sensor_texts.h"

namespace quiverly {
namespace {

constexpr char completedKey[] = "bonko.onboardingCompleted";

// The application on a laptop, used through its window. What it plays is written down.
class RunningApp {
public:
    RunningApp() {
        for (const SoundPack pack : SoundPack::allCases) {
            resources.addFile(std::filesystem::path("audio") / pack.folder() / "1.mp3");
        }
        resources.addFile(std::filesystem::path("audio") / SoundPack(SoundPack::sexy).folder() / "28.mp3");
        stage.platform.resources.folders = {resources.path()};
        stage.platform.audio.onPlay = [this](const VirtualAudio::PlayedClip& clip) {
            played.push_back(clip.file.parent_path().filename() / clip.file.filename());
        };
        app.emplace();
    }

    void show() {
        app->show();
        stage.settle();
    }

    void close() {
        window().close();
        stage.settle();
    }

    void quitAndLaunchAgain() {
        app.reset();
        app.emplace();
        show();
    }

    QMainWindow& window() { return applicationWindow(); }
    bool showsOnboarding() { return showsText(window(), "Welcome to Quiverly"); }
    bool showsMainView() { return showsText(window(), "MODE"); }
    bool showsButton(const QString& name) { return shows<QPushButton>(window(), name); }

    void click(const QString& button) {
        QTest::mouseClick(&find<QPushButton>(window(), button), Qt::LeftButton);
        stage.settle();
    }

    void clickIfThere(const QString& button) {
        if (window().isVisible() && showsButton(button)) click(button);
    }

    // Past the settling time of the check, so that the slap counts.
    void feelTestSlap() {
        stage.rest();
        stage.pass(2.0);
        stage.slap(0.5);
    }

    // From the first launch through the test slap and Continue.
    void passOnboarding() {
        show();
        feelTestSlap();
        click("Continue");
    }

    // The number on the counter line; 0 when there is none.
    int countedSlaps() {
        for (const QLabel* label : window().findChildren<QLabel*>()) {
            const QString text = label->text();
            if (label->isVisibleTo(&window()) && text.startsWith("Slaps")) return text.split(' ')[3].toInt();
        }
        return 0;
    }

    // Whatever has happened, the window tells what the program is doing.
    void expectTheTruth() {
        if (showsMainView()) {
            EXPECT_TRUE(showsText(window(), stage.sensorIsOpen() ? "Listening" : "Idle"));
        } else if (window().isVisible()) {
            EXPECT_EQ(showsButton("Continue"), showsText(window(), "Motion check passed"));
            EXPECT_EQ(showsButton("Continue"), showsPicture(window(), "Step 1, done"));
        } else {
            EXPECT_FALSE(stage.sensorIsOpen());
        }
    }

    // Wherever the user has got to, a slap is counted and heard in the end.
    void expectASlapToCountInTheEnd() {
        stage.connectSensor();
        close();
        show();
        if (showsOnboarding()) {
            feelTestSlap();
            click("Continue");
        }
        clickIfThere("Stop"); // perhaps it listens to a sensor that is gone
        click("Start listening");
        stage.rest();
        const int before = countedSlaps();
        played.clear();
        stage.slap(0.4);
        EXPECT_EQ(countedSlaps(), before + 1);
        EXPECT_EQ(played.size(), 1U);
    }

    TemporaryFolder resources;
    Stage stage;
    std::vector<std::string> played; // such as "sexy/1.mp3"
    std::optional<BonkoApp> app;
};

class BonkoAppTest : public testing::Test, protected RunningApp {};

qsizetype visibleWindows() {
    return std::ranges::count_if(QApplication::topLevelWidgets(), [](const QWidget* w) { return w->isVisible(); });
}

TEST_F(BonkoAppTest, TheFirstLaunchShowsTheOnboardingView) {
    show();
    EXPECT_TRUE(showsOnboarding());
    EXPECT_FALSE(showsMainView());
    EXPECT_EQ(window().windowTitle(), "Quiverly");
    EXPECT_EQ(window().size(), QSize(420, 560));
    EXPECT_EQ(visibleWindows(), 1);
    EXPECT_TRUE(defaults::object(completedKey) == std::nullopt);
}

TEST_F(BonkoAppTest, BuildingTheApplicationOpensNoSensor) {
    stage.settle();
    EXPECT_FALSE(stage.sensorIsOpen());
    show();
    EXPECT_TRUE(stage.sensorIsOpen()) << "the check has begun";
}

TEST_F(BonkoAppTest, TheMainViewTakesThePlaceInTheSameWindow) {
    show();
    const WId id = window().winId();
    feelTestSlap();
    click("Continue");
    EXPECT_TRUE(showsMainView());
    EXPECT_FALSE(showsOnboarding());
    EXPECT_EQ(window().winId(), id);
    EXPECT_EQ(window().size(), QSize(420, 560));
    EXPECT_EQ(visibleWindows(), 1);
    EXPECT_TRUE(showsText(window(), "Idle"));
    EXPECT_TRUE(find<QRadioButton>(window(), "Sexy").isEnabled()) << "the sound is on";
}

TEST_F(BonkoAppTest, BothViewsShareOneEngine) {
    passOnboarding();
    EXPECT_TRUE(showsText(window(), "Slaps this session: 1  ·  last 0.500g"));
}

TEST_F(BonkoAppTest, TheMainViewFindsTheEngineStoppedOutOfTheCheck) {
    passOnboarding();
    EXPECT_EQ(played, std::vector<std::string>{"sexy/28.mp3"});
    EXPECT_FALSE(stage.sensorIsOpen());
    QTest::mouseClick(&find<QRadioButton>(window(), "Halo"), Qt::LeftButton);
    click("Start listening");
    stage.rest();
    stage.slap(0.15); // too soft for the check
    EXPECT_TRUE(showsText(window(), "Slaps this session: 2  ·  last 0.150g"));
    EXPECT_EQ(played.back(), "halo/1.mp3");
}

TEST_F(BonkoAppTest, LaterLaunchesOpenOnTheMainView) {
    passOnboarding();
    quitAndLaunchAgain();
    EXPECT_TRUE(showsMainView());
    EXPECT_TRUE(find<QRadioButton>(window(), "Sexy").isEnabled()) << "the sound is on";
}

TEST_F(BonkoAppTest, WithoutContinueTheNextLaunchShowsTheOnboardingViewAgain) {
    show();
    feelTestSlap();
    EXPECT_TRUE(showsButton("Continue"));
    quitAndLaunchAgain();
    EXPECT_TRUE(showsOnboarding());
}

TEST_F(BonkoAppTest, AnUnusableRecordOfCompletionCountsAsNone) {
    for (const defaults::Object& stored :
         {defaults::Object(0.0), defaults::Object("1"), defaults::Object(defaults::OtherObject{})}) {
        stage.platform.defaults.values[completedKey] = stored;
        quitAndLaunchAgain();
        EXPECT_TRUE(showsOnboarding());
    }
}

TEST_F(BonkoAppTest, AStoreThatLosesTheRecordDoesNotTakeTheMainViewAway) {
    passOnboarding();
    stage.platform.defaults.values.clear();
    close();
    show();
    EXPECT_TRUE(showsMainView());
}

TEST_F(BonkoAppTest, SettingsAreKeptForTheNextLaunch) {
    passOnboarding();
    QTest::mouseClick(&find<QRadioButton>(window(), "Lizard"), Qt::LeftButton);
    QTest::keyClick(&find<QSlider>(window(), "Sensitivity"), Qt::Key_Right);
    quitAndLaunchAgain();
    EXPECT_TRUE(find<QRadioButton>(window(), "Lizard").isChecked());
    EXPECT_TRUE(showsText(window(), "0.13"));
}

TEST_F(BonkoAppTest, TheWindowKeepsToTheSizesOfItsContent) {
    show();
    window().resize(1000, 1000);
    EXPECT_EQ(window().size(), QSize(420, 560));
    window().resize(10, 10);
    EXPECT_EQ(window().size(), QSize(420, 560));

    passOnboarding();
    window().resize(10, 10);
    EXPECT_EQ(window().size(), QSize(400, 480));
    window().resize(1000, 900);
    EXPECT_EQ(window().size(), QSize(1000, 900));
}

TEST_F(BonkoAppTest, TheLeastSizeGrowsWithTheTexts) {
    const QFont former = QApplication::font();
    passOnboarding();
    click("Start listening");
    QFont large = former;
    large.setPointSizeF(25);
    QApplication::setFont(large);
    stage.settle();
    window().resize(10, 10);
    stage.settle();
    EXPECT_GT(window().width(), 400);
    for (const char* name : {"Quiverly", "Listening", "Sensitivity", "Lower detects lighter taps"}) {
        QLabel& label = text(window(), name);
        EXPECT_GE(label.width(), label.sizeHint().width()) << name;
        EXPECT_LE(place(label, window()).right(), window().width()) << name;
    }
    const auto segments = window().findChildren<QRadioButton*>();
    EXPECT_EQ(segments.size(), std::ssize(SoundPack::allCases));
    for (const QRadioButton* segment : segments) {
        EXPECT_LE(place(*segment, window()).right(), window().width() - 20) << segment->text().toStdString();
    }
    QApplication::setFont(former);
    stage.settle();
    window().resize(10, 10);
    EXPECT_EQ(window().size(), QSize(400, 480));
}

TEST_F(BonkoAppTest, ThereIsNoCommandForANewWindow) {
    passOnboarding();
    for (const Qt::KeyboardModifiers modifiers :
         {Qt::KeyboardModifiers(Qt::ControlModifier), Qt::ControlModifier | Qt::ShiftModifier}) {
        QTest::keyClick(&window(), Qt::Key_N, modifiers);
        stage.settle();
    }
    EXPECT_EQ(visibleWindows(), 1);
    EXPECT_TRUE(window().findChildren<QMenuBar*>().isEmpty());
    EXPECT_TRUE(window().findChildren<QAction*>().isEmpty());
}

TEST_F(BonkoAppTest, AfterContinueThePickerHasTheFocus) {
    passOnboarding();
    EXPECT_EQ(QApplication::focusWidget(), &find<QRadioButton>(window(), "Sexy"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    EXPECT_TRUE(find<QRadioButton>(window(), "Halo").isChecked());
}

TEST_F(BonkoAppTest, KeysCanCloseTheWindow) {
    app->closeOn(Qt::CTRL | Qt::Key_Q);
    show();
    QTest::keyClick(&window(), Qt::Key_Q);
    EXPECT_TRUE(window().isVisible());
    QTest::keyClick(&window(), Qt::Key_Q, Qt::ControlModifier);
    EXPECT_FALSE(window().isVisible());
}

TEST_F(BonkoAppTest, ReopeningTheWindowLeavesTheSoundOn) {
    passOnboarding();
    close();
    show();
    EXPECT_TRUE(find<QRadioButton>(window(), "Sexy").isEnabled());
}

TEST_F(BonkoAppTest, ClosingTheMainViewDoesNotStopTheEngine) {
    passOnboarding();
    click("Start listening");
    close();
    EXPECT_TRUE(stage.sensorIsOpen());
    show();
    EXPECT_TRUE(showsText(window(), "Listening"));
}

TEST_F(BonkoAppTest, ClosingTheWindowDuringTheCheckStopsIt) {
    show();
    close();
    EXPECT_FALSE(stage.sensorIsOpen());
    show();
    EXPECT_TRUE(stage.sensorIsOpen());
    EXPECT_TRUE(showsText(window(), looking));
}

TEST_F(BonkoAppTest, AMinimisedWindowHasNotDisappeared) {
    show();
    stage.pass(0.6);
    QWidget* view = window().centralWidget();
    QHideEvent minimised;
    QSpontaneKeyEvent::setSpontaneous(&minimised);
    qApp->notify(view, &minimised);
    EXPECT_TRUE(stage.sensorIsOpen());
    QShowEvent restored;
    QSpontaneKeyEvent::setSpontaneous(&restored);
    qApp->notify(view, &restored);
    stage.settle();
    EXPECT_TRUE(showsText(window(), detected));
}

TEST_F(BonkoAppTest, ShowingAgainBringsAMinimisedWindowBack) {
    show();
    window().showMinimized();
    stage.settle();
    show();
    EXPECT_FALSE(window().isMinimized());
    EXPECT_TRUE(window().isVisible());
}

TEST_F(BonkoAppTest, TheWindowCanBeClosedAndReopenedInEveryState) {
    const auto expectAfterReopening = [&](const char* shown) {
        close();
        show();
        EXPECT_TRUE(showsText(window(), shown)) << shown;
    };
    show();
    expectAfterReopening(looking);
    stage.pass(0.6); // the accelerometer is detected
    expectAfterReopening(looking);
    stage.removeSensor();
    expectAfterReopening(missing);
    stage.pass(0.6);
    expectAfterReopening(missing);
    stage.connectSensor();
    expectAfterReopening(looking);
    feelTestSlap();
    ASSERT_TRUE(showsText(window(), "Motion check passed"));
    expectAfterReopening(looking);
    feelTestSlap();
    click("Continue");
    expectAfterReopening("Idle");
    click("Start listening");
    expectAfterReopening("Listening");
    click("Stop");
    stage.removeSensor();
    click("Start listening");
    expectAfterReopening(missing);
}

// Slaps, time, closing, reopening, Continue, the button and the sensor's coming and going, in a random order.
class RandomOrderTest : public BonkoAppTest, public testing::WithParamInterface<unsigned> {};

TEST_P(RandomOrderTest, TheWindowShowsTheStateOfTheEngine) {
    std::mt19937 random(GetParam());
    const std::vector<std::function<void()>> acts = {
        [&] { stage.slap(0.5); },
        [&] { stage.rest(); },
        [&] { stage.pass(0.3); },
        [&] { stage.pass(2.0); },
        [&] { window().close(); },
        [&] { app->show(); },
        [&] { show(); },
        [&] { clickIfThere("Continue"); },
        [&] { clickIfThere("Start listening"); },
        [&] { clickIfThere("Stop"); },
        [&] { stage.removeSensor(); },
        [&] { stage.connectSensor(); },
    };
    std::uniform_int_distribution<std::size_t> choice(0, acts.size() - 1);
    for (int count = 0; count < 40; ++count) {
        acts[choice(random)]();
        stage.settle();
        expectTheTruth();
    }
    expectASlapToCountInTheEnd();
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomOrderTest, testing::Range(0U, 40U));

// Every order of what may happen to a check.
TEST(EveryOrderTest, TheWindowShowsTheStateOfTheEngine) {
    std::array<std::size_t, 5> order{0, 1, 2, 3, 4};
    do {
        SCOPED_TRACE(testing::PrintToString(order));
        RunningApp running;
        const std::array<std::function<void()>, 5> acts = {
            [&] { running.stage.slap(0.5); }, [&] { running.stage.pass(0.6); },          [&] { running.close(); },
            [&] { running.show(); },          [&] { running.clickIfThere("Continue"); },
        };
        running.show();
        running.stage.rest();
        running.stage.platform.calendar.advance(std::chrono::seconds(2)); // past the settling time, before the verdict
        for (const std::size_t act : order) {
            acts[act]();
            running.expectTheTruth();
        }
        running.expectASlapToCountInTheEnd();
    } while (std::ranges::next_permutation(order).found);
}

} // namespace
} // namespace quiverly
