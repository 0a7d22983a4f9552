#pragma once

#include <QImage>

#include "ui/controls/Picture.h"

namespace quiverly {

// The application's image in a rounded square, or the hand in its place where there is no image.
class Logo : public Picture {
public:
    struct Style {
        int size;            // pixels, of the square
        double radius;       // pixels, of its corners
        double symbolHeight; // pixels, of the hand
        bool shadow = false; // pink, below the square
    };

    Logo(const QImage& image, const Style& style);

private:
    void paintEvent(QPaintEvent* event) override;

    QImage image; // null: none
    Style style;
};

} // namespace quiverly
