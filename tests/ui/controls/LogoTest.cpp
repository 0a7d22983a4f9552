#include <gtest/gtest.h>

#include <QImage>

namespace quiverly {
namespace {

// How many separate bright stretches there are along a row of a picture.
int stretches(const QImage& picture, int row) {
    int count = 0;
    bool bright = false;
    for (int x = 0; x < picture.width(); ++x) {
        const bool nowBright = picture.pixelColor(x, row).green() > 200;
        if (nowBright && !bright) ++count;
        bright = nowBright;
    }
    return count;
}

TEST(LogoTest, OnAScreenOfFewPixelsTheHeaderStillHasFourFingers) {
    const QImage icon(QUIVERLY_IMAGES "/AppIcon.png");
    ASSERT_FALSE(icon.isNull());
    EXPECT_EQ(stretches(icon.scaled(36, 36, Qt::IgnoreAspectRatio, Qt::SmoothTransformation), 13), 4);
}

} // namespace
} // namespace quiverly
