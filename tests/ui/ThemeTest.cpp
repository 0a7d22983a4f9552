#include "ui/Theme.h"

#include <gtest/gtest.h>

#include <cmath>

#include <QPushButton>
#include <QRadioButton>

#include "Screen.h"
#include "Stage.h"
#include "SystemLooks.h"
#include "ui/BonkoApp.h"
#include "ui/ContentView.h"
#include "ui/Fonts.h"
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

// What a colour of that opacity looks like on the ground.
QColor over(const QColor& color, double opacity, const QColor& ground) {
    const auto mix = [&](float a, float b) { return static_cast<float>(a * opacity + b * (1 - opacity)); };
    return QColor::fromRgbF(mix(color.redF(), ground.redF()), mix(color.greenF(), ground.greenF()),
                            mix(color.blueF(), ground.blueF()));
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
        EXPECT_EQ(colorAt(app.mainWindow(), {5, 5}), colors.window);
        EXPECT_EQ(colorOf(text(app.mainWindow(), "Welcome to Quiverly")), colors.primary);
        EXPECT_EQ(colorOf(text(app.mainWindow(), "Slap your MacBook. It has feelings, and it will tell you.")),
                  colors.secondary);
    }
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

// The system's font at a size, in points.
class SystemFontTest : public testing::TestWithParam<double> {
protected:
    SystemFontTest() { setSize(GetParam()); }
    ~SystemFontTest() override { QApplication::setFont(former); }

    static void setSize(double points) {
        QFont font = QApplication::font();
        font.setPointSizeF(points);
        QApplication::setFont(font);
    }

    // Whether all that a label has to say fits into its place.
    static void expectWhole(QWidget& root) {
        for (QLabel* label : root.findChildren<QLabel*>()) {
            if (!label->isVisibleTo(&root)) continue;
            const QString said = label->text();
            if (label->wordWrap()) {
                EXPECT_GE(label->height(), label->heightForWidth(label->width())) << said.toStdString();
            } else {
                EXPECT_GE(label->width(), label->sizeHint().width()) << said.toStdString();
                EXPECT_GE(label->height(), label->sizeHint().height()) << said.toStdString();
            }
        }
        for (QAbstractButton* button : root.findChildren<QAbstractButton*>()) {
            if (!button->isVisibleTo(&root)) continue;
            EXPECT_GE(button->width(), button->sizeHint().width()) << button->text().toStdString();
            EXPECT_GE(button->height(), button->sizeHint().height()) << button->text().toStdString();
        }
    }

    Stage stage;
    const QFont former = QApplication::font();
};

TEST_P(SystemFontTest, NothingIsCutOff) {
    stage.platform.registry.services.back().openResult = hid::notPermitted;
    BonkoEngine engine;
    ContentView main(engine);
    main.resize(main.minimumSizeHint());
    main.show();
    engine.start();
    stage.slap(engine, 0.5);
    expectWhole(main);

    OnboardingView onboarding(engine);
    onboarding.show();
    stage.pass(0.6);
    expectWhole(onboarding);
    onboarding.hide();
}

TEST_P(SystemFontTest, AChangeReachesAnOpenWindow) {
    BonkoEngine engine;
    ContentView view(engine);
    view.show();
    stage.settle();
    const int before = text(view, "Idle").font().pixelSize();
    setSize(3 * GetParam());
    stage.settle();
    EXPECT_GT(text(view, "Idle").font().pixelSize(), before);
    EXPECT_GT(find<QPushButton>(view, "Start listening").font().pixelSize(), 13);
    EXPECT_GT(find<QRadioButton>(view, "Pain").font().pixelSize(), 13);
}

TEST_P(SystemFontTest, ADefaultOfADesktopKeepsTheSizesAsDrawn) {
    EXPECT_EQ(fontScale() == 1.0, GetParam() <= 11.0);
    EXPECT_EQ(fontFor(FontRole::body).pixelSize() == 13, GetParam() <= 11.0);
}

INSTANTIATE_TEST_SUITE_P(Points, SystemFontTest, testing::Values(7.0, 9.0, 11.0, 14.0, 18.0, 22.0));

} // namespace
} // namespace quiverly
