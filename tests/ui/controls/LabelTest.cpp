#include "ui/controls/Label.h"

#include <gtest/gtest.h>

#include <cmath>

#include <QFontMetricsF>

#include "platform/virtual/VirtualPlatform.h"
#include "support/Screen.h"

namespace quiverly {
namespace {

class LabelTest : public testing::Test {
protected:
    // The width that the lines take of a label with that text, in a place with room for so much of it in a line.
    int widthOfLines(const QString& text, const QString& room) {
        label.wrap();
        label.setText(text);
        label.resize(widthOf(room) + 2, 200);
        label.show();
        return label.contentsRect().width();
    }

    int widthOf(const QString& text) const {
        return static_cast<int>(std::ceil(QFontMetricsF(label.font()).horizontalAdvance(text)));
    }

    VirtualPlatform platform;
    Label label{FontRole::callout, Tone::primary};
};

TEST_F(LabelTest, NoWordIsLeftAloneOnTheLastLine) {
    EXPECT_NEAR(widthOfLines("mmm mmm mmm mmm mmm", "mmm mmm mmm mmm"), widthOf("mmm mmm mmm"), 1);
    EXPECT_NEAR(widthOfLines("mmm mmm mmm mmm", "mmm mmm mmm"), widthOf("mmm mmm"), 1);
}

TEST_F(LabelTest, NoLineBeginsWithADash) {
    EXPECT_NEAR(widthOfLines("mmm mmm — mmm", "mmm mmm — m"), widthOf("mmm mmm —"), 1);
}

TEST_F(LabelTest, AWordThatIsTooLongStaysWhole) {
    EXPECT_EQ(widthOfLines("mmmmmm mm", "mmm"), widthOf("mmm") + 2);
}

TEST_F(LabelTest, BalancedLinesAskForNoMoreHeight) {
    label.wrap();
    label.setText("mmm mmm mmm mmm mmm");
    const int width = widthOf("mmm mmm mmm mmm") + 2;
    const int before = label.heightForWidth(width);
    label.resize(width, before);
    label.show();
    EXPECT_EQ(label.heightForWidth(width), before);
    EXPECT_EQ(before, 2 * label.fontMetrics().lineSpacing());
}

TEST_F(LabelTest, CentredLinesKeepTheirCentre) {
    label.wrap(Qt::AlignHCenter);
    label.setText("mmm mmm mmm mmm mmm");
    label.resize(widthOf("mmm mmm mmm mmm") + 2, 200);
    label.show();
    EXPECT_NEAR(label.contentsRect().center().x(), label.rect().center().x(), 1);
    EXPECT_LT(label.contentsRect().width(), label.width() - 10);
}

} // namespace
} // namespace quiverly
