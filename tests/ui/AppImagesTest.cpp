#include "ui/AppImages.h"

#include <gtest/gtest.h>

#include <vector>

#include <QtEndian>

#include "platform/virtual/VirtualPlatform.h"
#include "support/PngPicture.h"
#include "support/Screen.h"
#include "support/TemporaryFolder.h"

namespace quiverly {
namespace {

class AppImagesTest : public testing::Test {
protected:
    AppImagesTest() { platform.resources.folders = {folder.path()}; }

    void put(const char* file, const QByteArray& content) {
        folder.addFile(file, {content.data(), static_cast<std::size_t>(content.size())});
    }

    static QColor colorOf(const QImage& image) { return image.pixelColor(image.rect().center()); }

    struct IconPicture {
        const char* type; // four characters, which tell the size
        int size;         // pixels, of the square
        QColor color;
    };

    // An icon file of macOS: the text "icns" and the length of the file, then for each picture its type, its length and
    // a PNG. Lengths are 32-bit big-endian numbers, and include themselves and the text before them.
    static QByteArray iconFile(const std::vector<IconPicture>& pictures) {
        const auto part = [](const char* type, const QByteArray& data) {
            QByteArray length(4, 0);
            qToBigEndian(static_cast<quint32>(8 + data.size()), length.data());
            return type + length + data;
        };
        QByteArray parts;
        for (const IconPicture& picture : pictures)
            parts += part(picture.type, pngPicture(picture.color, picture.size));
        return part("icns", parts);
    }

    TemporaryFolder folder;
    VirtualPlatform platform;
};

TEST_F(AppImagesTest, TheIconComesFirst) {
    put("AppIcon.png", pngPicture(Qt::blue));
    put("AppIcon.icns", pngPicture(Qt::red));
    put("logo.png", pngPicture(Qt::green));
    EXPECT_EQ(colorOf(headerLogo()), QColor(Qt::blue));
    EXPECT_EQ(colorOf(welcomeLogo()), QColor(Qt::blue));
}

TEST_F(AppImagesTest, OnlyTheWelcomeGoesOnWithTheIconFileOfTheBundle) {
    put("AppIcon.icns", pngPicture(Qt::red));
    put("logo.png", pngPicture(Qt::green));
    EXPECT_EQ(colorOf(headerLogo()), QColor(Qt::green));
    EXPECT_EQ(colorOf(welcomeLogo()), QColor(Qt::red));
}

TEST_F(AppImagesTest, OfTheSizesInAnIconFileTheLargestIsTaken) {
    put("AppIcon.icns", iconFile({{"ic07", 128, Qt::green}, {"ic08", 256, Qt::red}, {"icp4", 16, Qt::blue}}));
    EXPECT_EQ(colorOf(welcomeLogo()), QColor(Qt::red));
    EXPECT_EQ(welcomeLogo().width(), 256);
}

TEST_F(AppImagesTest, TheLogoComesLast) {
    put("logo.png", pngPicture(Qt::green));
    EXPECT_EQ(colorOf(headerLogo()), QColor(Qt::green));
    EXPECT_EQ(colorOf(welcomeLogo()), QColor(Qt::green));
}

TEST_F(AppImagesTest, AnIconThatCannotBeReadIsIgnored) {
    put("AppIcon.png", "no picture");
    put("AppIcon.icns", "icns no picture either");
    put("logo.png", pngPicture(Qt::green));
    EXPECT_EQ(colorOf(headerLogo()), QColor(Qt::green));
    EXPECT_EQ(colorOf(welcomeLogo()), QColor(Qt::green));
}

TEST_F(AppImagesTest, TheWindowHasItsIconInEverySize) {
    put("AppIcon.png", pngPicture(Qt::blue, 256));
    const QIcon icon = windowIcon();
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
        EXPECT_TRUE(icon.availableSizes().contains(QSize(size, size))) << size;
        EXPECT_EQ(colorOf(icon.pixmap(QSize(size, size), 1.0).toImage()), QColor(Qt::blue)) << size;
    }
}

TEST_F(AppImagesTest, WithoutFilesThereIsNone) {
    EXPECT_TRUE(windowIcon().isNull());
    EXPECT_TRUE(headerLogo().isNull());
    EXPECT_TRUE(welcomeLogo().isNull());
}

} // namespace
} // namespace quiverly
