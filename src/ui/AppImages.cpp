#include "ui/AppImages.h"

#include <initializer_list>

#include <QImageReader>

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

} // namespace quiverly
