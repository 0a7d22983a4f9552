#include "tools/simulate/window/LaptopPicture.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>

#include "support/Screen.h"
#include "ui/Theme.h"

namespace quiverly {
namespace {

using Part = LaptopPicture::Part;

class LaptopPictureTest : public testing::Test {
protected:
    LaptopPictureTest() { laptop.resize(area, 1.0); }
    ~LaptopPictureTest() override { Theme::current().prefer({}); }

    QImage draw(const Pose& pose, std::span<const LaptopPicture::Wave> waves = {}, std::span<const int> keys = {}) {
        QImage image(area.toSize(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        laptop.draw(painter, pose, waves, keys);
        return image;
    }

    const QSizeF area{500, 300};
    LaptopPicture laptop;
};

bool isEmpty(const QImage& image) {
    QImage empty = image;
    empty.fill(Qt::transparent);
    return image == empty;
}

TEST_F(LaptopPictureTest, APointLiesOnDeckOrScreenOrBesideTheLaptop) {
    for (const LaptopPicture::Spot& spot :
         {LaptopPicture::Spot{Part::deck, {0.1, 0.9}}, LaptopPicture::Spot{Part::deck, {0.9, 0.1}},
          LaptopPicture::Spot{Part::screen, {0.1, 0.1}}, LaptopPicture::Spot{Part::screen, {0.5, 0.9}}}) {
        const auto found = laptop.spotAt(laptop.pointOf(spot));
        ASSERT_TRUE(found);
        EXPECT_EQ(found->part, spot.part);
        EXPECT_NEAR(found->place.x(), spot.place.x(), 1e-6);
        EXPECT_NEAR(found->place.y(), spot.place.y(), 1e-6);
    }
    for (const QPointF& beside : {QPointF(1, 1), QPointF(499, 150), QPointF(250, 299)}) {
        EXPECT_FALSE(laptop.spotAt(beside));
    }
}

TEST_F(LaptopPictureTest, EveryPoseAndLookShowsTheWholeLaptop) {
    for (const Theme::Preferences& look : {Theme::Preferences{.dark = false}, Theme::Preferences{.dark = true},
                                           Theme::Preferences{.dark = false, .highContrast = true},
                                           Theme::Preferences{.dark = true, .highContrast = true}}) {
        Theme::current().prefer(look);
        laptop.forgetColors();
        for (const Pose& pose : {Pose{}, Pose{.up = 0.04}, Pose{.turn = -5.0}, Pose{.lid = 0.5}, Pose{.lid = 0.0}}) {
            const QImage image = draw(pose);
            EXPECT_GT(image.pixelColor(250, 200).alpha(), 200);
            EXPECT_TRUE(isEmpty(image.copy(0, 0, image.width(), 1))) << pose.up << ' ' << pose.turn << ' ' << pose.lid;
        }
    }
}

TEST_F(LaptopPictureTest, AWaveRunsOverThePartThatWasHit) {
    const LaptopPicture::Spot spot{Part::deck, {0.2, 0.8}};
    const LaptopPicture::Wave wave{.spot = spot, .radius = 0.1, .opacity = 1.0};
    const QImage before = draw({});
    const QImage after = draw({}, {&wave, 1});
    EXPECT_NE(after, before);
    const QPoint onTheScreen = laptop.pointOf({Part::screen, {0.5, 0.2}}).toPoint();
    EXPECT_EQ(after.pixelColor(onTheScreen), before.pixelColor(onTheScreen));
}

TEST_F(LaptopPictureTest, AKeyThatIsPressedHasTheAccent) {
    const int key = 17;
    EXPECT_FALSE(hasColor(draw({}).copy(0, 160, 500, 60), Theme::primaryPink));
    EXPECT_TRUE(hasColor(draw({}, {}, {&key, 1}).copy(0, 160, 500, 60), Theme::primaryPink));
}

} // namespace
} // namespace quiverly
