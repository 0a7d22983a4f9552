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
QImage largestImageIn(const QString& file) {
    QImageReader reader(file);
    QImage largest;
    do {
        const QImage image = reader.read();
        if (image.width() > largest.width()) largest = image;
    } while (reader.jumpToNextImage());
    return largest;
}

QImage firstThatLoads(std::initializer_list<ImageFile> candidates) {
    for (const ImageFile& candidate : candidates) {
        const auto file = bundle::resource(candidate.name, candidate.type);
        if (!file) continue;
        QImage image = largestImageIn(QString::fromStdString(file->string()));
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
