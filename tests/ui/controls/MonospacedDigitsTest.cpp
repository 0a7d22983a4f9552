#include "ui/controls/MonospacedDigits.h"

#include <gtest/gtest.h>

#include <QLayoutItem>

#include "support/Screen.h"

namespace quiverly {
namespace {

// The titles' typeface: its digits differ in width.
class MonospacedDigitsTest : public testing::Test {
protected:
    MonospacedDigitsTest() {
        number.resize(120, 30);
        number.show();
    }

    // What stands left of the last digits, far enough from them.
    QImage front(const QString& text) {
        number.setText(text);
        return number.grab(QRect(0, 0, 120 - 4 * number.fontMetrics().maxWidth() / 2, 30)).toImage();
    }

    MonospacedDigits number{FontRole::title, Tone::primary};
};

TEST_F(MonospacedDigitsTest, ADigitMovesNothingBesideIt) {
    const QFontMetrics metrics = number.fontMetrics();
    ASSERT_NE(metrics.horizontalAdvance("0"), metrics.horizontalAdvance("1"));
    const QImage before = front("88.00");
    EXPECT_EQ(front("88.11"), before);
    EXPECT_NE(front("11.00"), before);
}

TEST_F(MonospacedDigitsTest, ANumberOfAnyLengthAsksForNoWidth) {
    number.setText(QString(400, '8'));
    EXPECT_EQ(QWidgetItem(&number).minimumSize().width(), 0);
}

} // namespace
} // namespace quiverly
