#include "ui/Fonts.h"

#include <gtest/gtest.h>

#include <QGlyphRun>
#include <QPushButton>
#include <QRadioButton>
#include <QRawFont>
#include <QTextLayout>

#include "support/Screen.h"
#include "support/Stage.h"
#include "ui/ContentView.h"
#include "ui/OnboardingView.h"

namespace quiverly {
namespace {

bool hasAllGlyphs(const QString& text, const QFont& font) {
    QTextLayout layout(text, font);
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    return std::ranges::none_of(layout.glyphRuns(),
                                [](const QGlyphRun& run) { return run.glyphIndexes().contains(0); });
}

void expectAllGlyphs(QWidget& view) {
    for (const QLabel* label : view.findChildren<QLabel*>()) {
        EXPECT_TRUE(hasAllGlyphs(label->text(), label->font())) << label->text().toStdString();
    }
    for (const QAbstractButton* button : view.findChildren<QAbstractButton*>()) {
        EXPECT_TRUE(hasAllGlyphs(button->text(), button->font())) << button->text().toStdString();
    }
}

TEST(FontsTest, ACharacterThatNoFontHasIsNoticed) {
    EXPECT_FALSE(hasAllGlyphs(QString(QChar(0xE7F3)), fontFor(FontRole::body)));
}

TEST(FontsTest, TheMainViewHasItsGlyphs) {
    Stage stage;
    BonkoEngine engine;
    ContentView view(engine);
    expectAllGlyphs(view);
    engine.start();
    stage.rest();
    expectAllGlyphs(view);
    engine.stop();
    stage.platform.registry.services.back().openResult = hid::notPermitted;
    engine.start();
    stage.settle();
    expectAllGlyphs(view);
}

TEST(FontsTest, TheOnboardingViewHasItsGlyphs) {
    Stage stage;
    BonkoEngine engine;
    OnboardingView view(engine);
    view.show();
    expectAllGlyphs(view);
    stage.rest();
    stage.pass(2.0);
    expectAllGlyphs(view);
    stage.slap(0.5);
    expectAllGlyphs(view);
    view.hide();
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
        EXPECT_GE(root.findChildren<QLabel*>().size(), 4);
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
    BonkoEngine engine;
    ContentView main(engine);
    main.resize(main.minimumSizeHint());
    main.show();
    engine.start();
    stage.rest();
    expectWhole(main);
    engine.stop();
    stage.platform.registry.services.back().openResult = hid::notPermitted;
    engine.start();
    stage.settle();
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
