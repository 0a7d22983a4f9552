#pragma once

#include <QBuffer>
#include <QColor>
#include <QImage>

namespace quiverly {

// The content of a PNG file: a square of one colour, so many pixels wide.
inline QByteArray pngPicture(const QColor& color, int size = 64) {
    QImage image(size, size, QImage::Format_RGB32);
    image.fill(color);
    QBuffer png;
    image.save(&png, "png");
    return png.data();
}

} // namespace quiverly
