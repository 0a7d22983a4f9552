#include "ui/AppImages.h"

#include <initializer_list>

#include <QImageReader>
#include <QPixmap>

#include "platform/bundle.h"

namespace quiverly {

namespace {

struct ImageFile {
    const char* name;
    const char* type;
};

constexpr ImageFile asset{"AppIcon", "png"};
constexpr ImageFile icon{"AppIcon", "icns"};
constexpr ImageFile logo{"logo", "png"};

// An icon file holds the same picture in several sizes.
QImage largestImageOf(QImageReader& reader) {
    QImage largest;
    do {
        const QImage image = reader.read();
        if (image.width() > largest.width()) largest = image;
    } while (reader.jumpToNextImage());
    return largest;
}

// An image of that type, or else of any: to tell by the content, the toolkit loads every plugin that it has.
QImage imageIn(const QString& file, const char* type) {
    QImageReader reader(file, type);
    reader.setAutoDetectImageFormat(false);
    QImage image = largestImageOf(reader);
    if (!image.isNull()) return image;
    QImageReader byContent(file);
    return largestImageOf(byContent);
}

QImage firstThatLoads(std::initializer_list<ImageFile> candidates) {
    for (const ImageFile& candidate : candidates) {
        const auto file = bundle::resource(candidate.name, candidate.type);
        if (!file) continue;
        QImage image = imageIn(QString::fromStdString(file->string()), candidate.type);
        if (!image.isNull()) return image;
    }
    return {};
}

} // namespace

QImage headerLogo() {
    return firstThatLoads({asset, logo});
}

QImage welcomeLogo() {
    return firstThatLoads({asset, icon, logo});
}

QIcon windowIcon() {
    const QImage picture = welcomeLogo();
    QIcon sizes;
    if (picture.isNull()) return sizes;
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
        sizes.addPixmap(QPixmap::fromImage(picture.scaled(size, size, Qt::KeepAspectRatio, Qt::SmoothTransformation)));
    }
    return sizes;
}

} // namespace quiverly
