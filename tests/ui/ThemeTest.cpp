#include "ui/Theme.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include <QProxyStyle>
#include <QRadioButton>
#include <QSet>

#include "support/Activity.h"
#include "support/Screen.h"
#include "support/Stage.h"
#include "support/SystemLooks.h"
#include "ui/BonkoApp.h"
#include "ui/ContentView.h"
#include "ui/OnboardingView.h"
#include "ui/controls/PushButton.h"
#include "ui/controls/SegmentedPicker.h"
#include "ui/controls/Slider.h"
#include "ui/controls/Spinner.h"

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

std::string nameOfTheme(const testing::TestParamInfo<const Theme::Colors*>& theme) {
    const bool highContrast = theme.param == &Theme::lightHighContrast || theme.param == &Theme::darkHighContrast;
    const bool dark = theme.param == &Theme::dark || theme.param == &Theme::darkHighContrast;
    return std::string(dark ? "Dark" : "Light") + (highContrast ? "InHighContrast" : "");
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
    EXPECT_GE(contrast(Qt::white, GetParam()->accent), 3.0);
    EXPECT_GE(contrast(Qt::white, GetParam()->stop), 3.0);
}

INSTANTIATE_TEST_SUITE_P(Themes, ContrastTest,
                         testing::Values(&Theme::light, &Theme::dark, &Theme::lightHighContrast,
                                         &Theme::darkHighContrast),
                         nameOfTheme);

class HighContrastTest : public testing::TestWithParam<const Theme::Colors*> {};

TEST_P(HighContrastTest, TextsStandOutMore) {
    const Theme::Colors& colors = *GetParam();
    for (const QColor& text : {colors.primary, colors.secondary, colors.tertiary, colors.red, colors.orange}) {
        EXPECT_GE(contrast(text, colors.window), 7.0) << text.name().toStdString();
    }
    EXPECT_GE(contrast(Qt::white, colors.accent), 7.0);
    EXPECT_GE(contrast(Qt::white, colors.stop), 7.0);
    EXPECT_GE(contrast(colors.tertiary, colors.track), 4.5) << "the title of a disabled segment";
}

TEST_P(HighContrastTest, EdgesStandOutFromBothSides) {
    const Theme::Colors& colors = *GetParam();
    EXPECT_GE(contrast(colors.trackEdge, colors.window), 3.0);
    EXPECT_GE(contrast(colors.trackEdge, colors.track), 3.0);
    EXPECT_GE(contrast(colors.selectionEdge, colors.track), 3.0);
    EXPECT_GE(contrast(colors.selectionEdge, colors.selection), 3.0);
    EXPECT_GE(contrast(colors.groove, colors.window), 3.0);
    EXPECT_GE(contrast(colors.handleEdge, colors.window), 3.0);
    EXPECT_GE(contrast(colors.handleEdge, colors.handle), 3.0);
    EXPECT_GE(contrast(colors.divider, colors.window), 3.0);
    EXPECT_GE(contrast(colors.warning, colors.window), 3.0);
    EXPECT_GE(colors.edgeWidth, 1.0);
}

INSTANTIATE_TEST_SUITE_P(Themes, HighContrastTest, testing::Values(&Theme::lightHighContrast, &Theme::darkHighContrast),
                         nameOfTheme);

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

// The colours on the level or upright way from outside a control into it.
std::vector<QColor> colorsOn(const QImage& picture, QPoint outside, QPoint inside) {
    const QPoint from = outside * picture.devicePixelRatio();
    const QPoint way = inside * picture.devicePixelRatio() - from;
    const int length = way.manhattanLength();
    std::vector<QColor> colors;
    for (int pixel = 0; pixel <= length; ++pixel) colors.push_back(picture.pixelColor(from + way * pixel / length));
    return colors;
}

// How far a control stands out from what is outside.
double contrastToGround(const std::vector<QColor>& way) {
    double most = 0.0;
    for (const QColor& color : way) most = std::max(most, contrast(color, way.front()));
    return most;
}

// How far a control's edge stands out from both what is outside and what is inside.
double contrastOfEdge(const std::vector<QColor>& way) {
    double most = 0.0;
    for (const QColor& color : way) {
        most = std::max(most, std::min(contrast(color, way.front()), contrast(color, way.back())));
    }
    return most;
}

class ThemeTest : public testing::Test {
protected:
    ~ThemeTest() override {
        Theme::current().prefer({});
        setSystemDark(false);
    }
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

TEST_F(ThemeTest, WhatTheDesktopTellsComesBeforeItsPalette) {
    Stage stage;
    BonkoApp app;
    app.show();
    stage.settle();
    const auto expectGround = [&](const Theme::Colors& colors) {
        stage.settle();
        EXPECT_EQ(colorAt(applicationWindow(), {5, 5}), colors.window);
        EXPECT_EQ(colorOf(text(applicationWindow(), "Welcome to Quiverly")), colors.primary);
    };
    Theme::current().prefer({.dark = true, .highContrast = false});
    expectGround(Theme::dark);
    Theme::current().prefer({.dark = true, .highContrast = true});
    expectGround(Theme::darkHighContrast);
    setSystemDark(true);
    Theme::current().prefer({.dark = false, .highContrast = true});
    expectGround(Theme::lightHighContrast);
    Theme::current().prefer({});
    expectGround(Theme::dark);
}

TEST_F(ThemeTest, APaletteOfExtremesAsksForHighContrast) {
    const auto windowFor = [](const QColor& window, const QColor& text) {
        QPalette palette(window);
        palette.setColor(QPalette::WindowText, text);
        QApplication::setPalette(palette);
        QApplication::processEvents();
        return Theme::current().colors().window;
    };
    EXPECT_EQ(windowFor(Qt::white, Qt::black), Theme::lightHighContrast.window);
    EXPECT_EQ(windowFor(Qt::black, Qt::white), Theme::darkHighContrast.window);
    EXPECT_EQ(windowFor(Qt::black, Qt::yellow), Theme::darkHighContrast.window);
    EXPECT_EQ(windowFor(QColor(239, 239, 239), Qt::black), Theme::light.window);
    EXPECT_EQ(windowFor(QColor(30, 30, 30), Qt::white), Theme::dark.window);
}

TEST_F(ThemeTest, InHighContrastTheEdgesOfControlsStandOut) {
    for (const bool dark : {false, true}) {
        Theme::current().prefer({.dark = dark, .highContrast = true});
        Stage stage;
        BonkoEngine engine;
        engine.soundEnabled = true;
        ContentView view(engine);
        view.resize(420, 560);
        view.setPalette(Theme::current().palette());
        view.show();
        stage.settle();
        const QImage picture = view.grab().toImage();

        const QRect picker = place(find<SegmentedPicker>(view, "Mode"), view);
        const QPoint left(picker.left(), picker.center().y());
        EXPECT_GE(contrastOfEdge(colorsOn(picture, left - QPoint(4, 0), left + QPoint(6, 0))), 3.0) << "of the picker";
        const QRect chosen = place(find<QRadioButton>(view, "Sexy"), view);
        const QPoint right(chosen.right(), chosen.center().y());
        EXPECT_GE(contrastOfEdge(colorsOn(picture, right + QPoint(4, 0), right - QPoint(6, 0))), 3.0)
            << "of the chosen segment";
        const QRect button = place(find<PushButton>(view, "Start listening"), view);
        const QPoint top(button.center().x() / 2, button.top());
        EXPECT_GE(contrastToGround(colorsOn(picture, top - QPoint(0, 4), top + QPoint(0, 6))), 3.0) << "of the button";
        const QRect slider = place(find<Slider>(view, "Sensitivity"), view);
        const double fraction = (0.12 - 0.04) / (0.40 - 0.04);
        const QPoint handle(slider.left() + int(9.5 + fraction * (slider.width() - 19)), slider.center().y());
        EXPECT_GE(contrastOfEdge(colorsOn(picture, handle - QPoint(0, 12), handle)), 3.0) << "of the slider's handle";
        view.hide();
    }
}

// A style as of a desktop whose user has turned animations off.
class StillStyle : public QProxyStyle {
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override {
        return hint == SH_Widget_Animation_Duration ? 0 : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

TEST_F(ThemeTest, TheStyleTellsOfUsersWhoWantNoMotion) {
    const QString usual = QApplication::style()->name();
    EXPECT_FALSE(Theme::current().reducesMotion());
    QApplication::setStyle(new StillStyle);
    EXPECT_TRUE(Theme::current().reducesMotion());
    QApplication::setStyle(usual);
    EXPECT_FALSE(Theme::current().reducesMotion());
}

TEST_F(ThemeTest, TheSpinnerStopsAndTurnsAsTheUserWants) {
    Spinner spinner;
    spinner.show();
    EXPECT_EQ(activity(spinner).size(), 1);
    Theme::current().prefer({.dark = {}, .reducedMotion = true});
    EXPECT_EQ(activity(spinner), QStringList());
    Theme::current().prefer({});
    EXPECT_EQ(activity(spinner).size(), 1);
}

TEST_F(ThemeTest, NothingMovesForUsersWhoWantNoMotion) {
    Theme::current().prefer({.dark = {}, .reducedMotion = true});
    Stage stage;
    BonkoApp app;
    app.show();
    stage.rest();
    EXPECT_EQ(activity(applicationWindow()), QStringList()) << "the spinner stands still";
    stage.pass(2.0);
    stage.slap(0.5);
    EXPECT_TRUE(showsText(applicationWindow(), "Motion check passed"));
    EXPECT_EQ(activity(applicationWindow()), QStringList()) << "nothing fades";
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
