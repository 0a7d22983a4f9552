#pragma once

#include <QImage>
#include <QWidget>

namespace quiverly {

// The application's logo: an image in a rounded square, or the hand when there is no image.
class Logo : public QWidget {
public:
    // Lengths of the design, in pixels.
    struct Style {
        int size;            // of the square
        double radius;       // of its corners
        double symbolHeight; // of the hand
        bool shadow = false; // pink, below the square
    };

    Logo(const QImage& image, const Style& style);

private:
    void resizeWithTexts();
    void paintEvent(QPaintEvent* event) override;

    QImage image; // may be null
    Style style;
};

} // namespace quiverly
