#include "ui/Fonts.h"

#include <gtest/gtest.h>

#include <QGlyphRun>
#include <QPushButton>
#include <QRadioButton>
#include <QRawFont>
#include <QScrollArea>
#include <QSlider>
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

    // Every text, button and picture has the room that it needs, inside the width of the window.
    void expectWhole(QWidget& root) {
        stage.settle();
        int measured = 0;
        for (QWidget* part : root.findChildren<QWidget*>()) {
            if (!part->isVisibleTo(&root)) continue;
            const QString name = accessibleText(*part);
            const auto* label = qobject_cast<QLabel*>(part);
            if (label && label->wordWrap()) {
                EXPECT_GE(label->height(), label->heightForWidth(label->width())) << name.toStdString();
            } else if (label || qobject_cast<QAbstractButton*>(part)) {
                EXPECT_GE(part->width(), part->minimumSizeHint().width()) << name.toStdString();
                EXPECT_GE(part->height(), part->sizeHint().height()) << name.toStdString();
            } else if (describe(*part).role() != QAccessible::Graphic) {
                continue;
            }
            ++measured;
            const QRect shown = place(*part, root);
            EXPECT_GE(shown.left(), 0) << name.toStdString();
            EXPECT_LT(shown.right(), root.width()) << name.toStdString();
            EXPECT_TRUE(part->parentWidget()->rect().contains(part->geometry())) << name.toStdString();
        }
        EXPECT_GE(measured, 7);
    }

    // Texts that are painted, not laid out: the number on the badge leaves a margin inside the circle.
    static void expectNumberInside(QWidget& badge) {
        const QImage painted = badge.grab().toImage();
        const double number = rowsOf(painted, Qt::white);
        EXPECT_GT(number, badge.height() * 0.2);
        EXPECT_LT(number, badge.height() * 0.6);
    }

    void expectInView(QWidget& part, QWidget& view) {
        const QWidget* viewport = view.findChild<QScrollArea*>()->viewport();
        EXPECT_TRUE(viewport->rect().contains(place(part, *viewport))) << accessibleText(part).toStdString();
    }

    Stage stage;
    const QFont former = QApplication::font();
};

TEST_P(SystemFontTest, TheMainViewIsWholeInEveryState) {
    BonkoEngine engine;
    ContentView view(engine);
    view.resize(view.minimumSizeHint());
    view.show();
    expectWhole(view);
    engine.start();
    stage.rest();
    expectWhole(view);
    expectInView(text(view, "Slaps this session: 1  ·  last 1.000g"), view);
    engine.stop();
    stage.platform.registry.services.back().openResult = hid::notPermitted;
    engine.start();
    expectWhole(view);
    expectInView(text(view, "If macOS asks, allow Quiverly under Privacy → Input Monitoring"), view);
}

TEST_P(SystemFontTest, TheOnboardingViewIsWholeInEveryState) {
    BonkoEngine engine;
    OnboardingView view(engine);
    view.show();
    expectWhole(view);
    expectNumberInside(picture(view, "Step 1"));
    expectInView(text(view, "Looking for accelerometer…"), view);
    stage.rest();
    stage.pass(2.0);
    expectWhole(view);
    expectInView(text(view, "Slap your MacBook to test — you’ll hear a sexy clip!"), view);
    stage.slap(0.5);
    expectWhole(view);
    expectNumberInside(picture(view, "Step 1, done"));
    expectInView(text(view, "Motion check passed"), view);
    view.hide();
    stage.platform.registry.services.back().openResult = hid::notPermitted;
    view.show();
    stage.pass(0.6);
    expectWhole(view);
    expectInView(
        text(view, "Need Input Monitoring permission (System Settings → Privacy & Security). Code -536870174."), view);
    view.hide();
}

TEST_P(SystemFontTest, DrawnPartsGrowWithTheTexts) {
    BonkoEngine engine;
    ContentView main(engine);
    OnboardingView onboarding(engine);
    EXPECT_EQ(picture(main, "Quiverly").width(), qRound(36 * fontScale()));
    EXPECT_EQ(picture(onboarding, "Quiverly").width(), qRound(72 * fontScale()));
    EXPECT_EQ(picture(onboarding, "Step 1").width(), qRound(28 * fontScale()));
    EXPECT_EQ(find<QSlider>(main, "Sensitivity").sizeHint().height(), qRound(22 * fontScale()));
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

INSTANTIATE_TEST_SUITE_P(Points, SystemFontTest, testing::Values(7.0, 9.0, 11.0, 14.0, 18.0, 24.0));

} // namespace
} // namespace quiverly
