#include "ui/controls/Logo.h"

#include <cmath>

#include <QGraphicsEffect>
#include <QPainter>

#include "ui/Fonts.h"
#include "ui/Theme.h"
#include "ui/controls/Symbol.h"
#include "ui/controls/accessibility.h"
#include "ui/controls/painting.h"

namespace quiverly {

namespace {

// A soft pink shadow of a rounded square, equally blurred on every screen. It is painted as shells from the outside in,
// each as opaque as what it has to add to those before it.
class Shadow : public QGraphicsEffect {
public:
    explicit Shadow(double radius) : radius(radius) {} // of the square's corners, in pixels of the design

    QRectF boundingRectFor(const QRectF& source) const override {
        const double reach = scaled(double(blur));
        return source.adjusted(-reach, -reach, reach, reach + scaled(double(drop)));
    }

private:
    // The opacity of the shadow at a distance outside its edge: that of a straight edge blurred by a Gaussian.
    static double opacityAt(double distance) { return 0.5 * strength * std::erfc(distance / (blur / 2.0) / M_SQRT2); }

    void draw(QPainter* painter) override {
        const QRectF square = sourceBoundingRect().translated(0, scaled(double(drop)));
        double painted = 0.0;
        for (int distance = blur; distance >= -drop; --distance) {
            const double opacity = opacityAt(distance);
            QColor shell = Theme::primaryPink;
            shell.setAlphaF(static_cast<float>((opacity - painted) / (1 - painted)));
            painted = opacity;
            const double outset = scaled(double(distance));
            fillRounded(*painter, square.adjusted(-outset, -outset, outset, outset), scaled(radius) + outset, shell);
        }
        drawSource(painter);
    }

    static constexpr double strength = 0.35; // opacity
    static constexpr int blur = 12;          // pixels of the design; twice the standard deviation
    static constexpr int drop = 4;           // pixels of the design

    double radius;
};

} // namespace

Logo::Logo(const QImage& image, const Style& style) : image(image), style(style) {
    describeAs(*this, QAccessible::Graphic, "Quiverly");
    resizeWithTexts();
    connect(&Theme::current(), &Theme::changed, this, &Logo::resizeWithTexts);
    if (style.shadow && !image.isNull()) setGraphicsEffect(new Shadow(style.radius));
}

void Logo::resizeWithTexts() {
    setFixedSize(scaled(style.size), scaled(style.size));
}

void Logo::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (image.isNull()) {
        const double symbolHeight = scaled(style.symbolHeight);
        const QRectF place(0, (height() - symbolHeight) / 2, width(), symbolHeight);
        drawSymbol(painter, place, Symbol::hand, Theme::primaryPink);
        return;
    }
    QImage fitting = image.scaled(size() * devicePixelRatioF(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    fitting.setDevicePixelRatio(devicePixelRatioF());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QBrush(fitting));
    const double radius = scaled(style.radius);
    painter.drawRoundedRect(rect(), radius, radius);
}

} // namespace quiverly
