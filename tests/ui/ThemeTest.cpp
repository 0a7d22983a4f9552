#include "ui/Theme.h"

#include <gtest/gtest.h>

#include <cmath>

#include <QSet>

#include "support/Screen.h"
#include "support/Stage.h"
#include "support/SystemLooks.h"
#include "ui/BonkoApp.h"
#include "ui/ContentView.h"
#include "ui/OnboardingView.h"

namespace quiverly {
namespace {

double linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

// As the Web Content Accessibility Guidelines 2.1 define it.
double luminance(const QColor& color) {
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor& a, const QColor& b) {
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

class ContrastTest : public testing::TestWithParam<const Theme::Colors*> {};

TEST_P(ContrastTest, TextsStandOutFromTheWindow) {
    const Theme::Colors& colors = *GetParam();
    EXPECT_GE(contrast(colors.primary, colors.window), 4.5);
    EXPECT_GE(contrast(colors.secondary, colors.window), 4.5);
    EXPECT_GE(contrast(colors.tertiary, colors.window), 3.0);
    EXPECT_GE(contrast(colors.red, colors.window), 4.5);
    EXPECT_GE(contrast(colors.orange, colors.window), 4.5);
}

TEST_P(ContrastTest, TextsStandOutFromThePill) {
    const Theme::Colors& colors = *GetParam();
    EXPECT_GE(contrast(colors.secondary, over(colors.secondary, 0.15, colors.window)), 4.5);
    EXPECT_GE(contrast(colors.green, over(colors.green, 0.15, colors.window)), 4.5);
}

TEST_P(ContrastTest, TextsStandOutFromThePicker) {
    const Theme::Colors& colors = *GetParam();
    EXPECT_GE(contrast(colors.primary, colors.track), 4.5);
    EXPECT_GE(contrast(colors.primary, colors.selection), 4.5);
}

TEST_P(ContrastTest, TheFocusOfTheKeyboardStandsOutFromWhatItSurrounds) {
    const Theme::Colors& colors = *GetParam();
    EXPECT_GE(contrast(colors.focus, colors.window), 3.0);
    EXPECT_GE(contrast(colors.focus, colors.track), 3.0);
    EXPECT_GE(contrast(colors.focus, colors.selection), 3.0);
}

TEST_P(ContrastTest, WhiteStandsOutFromTheButtons) {
    EXPECT_GE(contrast(Qt::white, Theme::primaryPink), 3.0);
    EXPECT_GE(contrast(Qt::white, Theme::stopRed), 3.0);
}

INSTANTIATE_TEST_SUITE_P(Themes, ContrastTest, testing::Values(&Theme::light, &Theme::dark),
                         [](const auto& theme) { return theme.param == &Theme::light ? "Light" : "Dark"; });

// What the toolkit paints while this lives.
class PaintedObjects : public QObject {
public:
    PaintedObjects() { qApp->installEventFilter(this); }

    bool contains(const QObject* object) const { return objects.contains(object); }

private:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint) objects.insert(watched);
        return false;
    }

    QSet<const QObject*> objects;
};

// A scroll area and its viewport leave all painting to the content.
bool isCovered(const QWidget& widget) {
    return widget.inherits("QAbstractScrollArea") ||
           (widget.parent() && widget.parent()->inherits("QAbstractScrollArea"));
}

class ThemeTest : public testing::Test {
protected:
    ~ThemeTest() override { setSystemDark(false); }
};

TEST_F(ThemeTest, ThePinkIsTheOneThatWasChosen) {
    EXPECT_NEAR(Theme::primaryPink.redF(), 0.95, 0.5 / 255);
    EXPECT_NEAR(Theme::primaryPink.greenF(), 0.28, 0.5 / 255);
    EXPECT_NEAR(Theme::primaryPink.blueF(), 0.62, 0.5 / 255);
    EXPECT_EQ(Theme::primaryPink.alphaF(), 1.0F);
}

TEST_F(ThemeTest, AnOpenWindowFollowsTheSystem) {
    Stage stage;
    BonkoApp app;
    app.show();
    stage.settle();
    for (const bool dark : {true, false, true}) {
        setSystemDark(dark);
        stage.settle();
        const Theme::Colors& colors = dark ? Theme::dark : Theme::light;
        EXPECT_EQ(colorAt(applicationWindow(), {5, 5}), colors.window);
        EXPECT_EQ(colorOf(text(applicationWindow(), "Welcome to Quiverly")), colors.primary);
        EXPECT_EQ(colorOf(text(applicationWindow(), "Slap your MacBook. It has feelings, and it will tell you.")),
                  colors.secondary);
    }
}

TEST_F(ThemeTest, AllThatShowsIsPaintedAnew) {
    Stage stage;
    BonkoEngine engine;
    ContentView main(engine);
    OnboardingView onboarding(engine);
    main.show();
    onboarding.show();
    stage.settle();
    for (QWidget* view : {static_cast<QWidget*>(&main), static_cast<QWidget*>(&onboarding)}) {
        const PaintedObjects painted;
        setSystemDark(view == &main);
        stage.settle();
        for (const QWidget* child : view->findChildren<QWidget*>()) {
            if (child->visibleRegion().isEmpty() || isCovered(*child)) continue;
            EXPECT_TRUE(painted.contains(child)) << child->metaObject()->className();
        }
    }
    onboarding.hide();
}

TEST_F(ThemeTest, AViewThatIsShownLaterHasTheColorsOfTheMoment) {
    Stage stage;
    BonkoEngine engine;
    ContentView view(engine);
    view.resize(420, 560);
    setSystemDark(true);
    stage.settle();
    view.show();
    stage.settle();
    EXPECT_EQ(colorOf(text(view, "Idle")), Theme::dark.secondary);
    EXPECT_EQ(colorOf(text(view, "Lower detects lighter taps")), Theme::dark.tertiary);
}

} // namespace
} // namespace quiverly
