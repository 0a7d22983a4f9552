#include "ui/AppImages.h"

#include <initializer_list>

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

QImage firstThatLoads(std::initializer_list<ImageFile> candidates) {
    for (const ImageFile& candidate : candidates) {
        const auto file = bundle::resource(candidate.name, candidate.type);
        if (!file) continue;
        QImage image(QString::fromStdString(file->string()));
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
