#include "ui/Fonts.h"

#include <gtest/gtest.h>

#include <QGlyphRun>
#include <QRawFont>
#include <QTextLayout>

#include "Screen.h"
#include "Stage.h"
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
    stage.slap(engine, 0.5);
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
    stage.pass(2.0);
    expectAllGlyphs(view);
    stage.slap(engine, 0.5);
    expectAllGlyphs(view);
    view.hide();
}

} // namespace
} // namespace quiverly
