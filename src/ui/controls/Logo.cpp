#include "ui/controls/Logo.h"

#include <cmath>

#include <QGraphicsEffect>
#include <QPainter>

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
    explicit Shadow(double radius) : radius(radius) {}

    QRectF boundingRectFor(const QRectF& source) const override {
        return source.adjusted(-blur, -blur, blur, blur + drop);
    }

private:
    // The opacity of the shadow at a distance outside its edge: that of a straight edge blurred by a Gaussian.
    static double opacityAt(double distance) { return 0.5 * strength * std::erfc(distance / (blur / 2.0) / M_SQRT2); }

    void draw(QPainter* painter) override {
        const QRectF square = sourceBoundingRect().translated(0, drop);
        double painted = 0.0;
        for (int distance = blur; distance >= -drop; --distance) {
            const double opacity = opacityAt(distance);
            QColor shell = Theme::primaryPink;
            shell.setAlphaF(static_cast<float>((opacity - painted) / (1 - painted)));
            painted = opacity;
            fillRounded(*painter, square.adjusted(-distance, -distance, distance, distance), radius + distance, shell);
        }
        drawSource(painter);
    }

    static constexpr double strength = 0.35; // opacity
    static constexpr int blur = 12;          // pixels; twice the standard deviation
    static constexpr int drop = 4;           // pixels

    double radius;
};

} // namespace

Logo::Logo(const QImage& image, const Style& style) : image(image), style(style) {
    describeAs(*this, QAccessible::Graphic, "Quiverly");
    setFixedSize(style.size, style.size);
    if (style.shadow && !image.isNull()) setGraphicsEffect(new Shadow(style.radius));
}

void Logo::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (image.isNull()) {
        const QRectF place(0, (height() - style.symbolHeight) / 2, width(), style.symbolHeight);
        drawSymbol(painter, place, Symbol::hand, Theme::primaryPink);
        return;
    }
    QImage scaled = image.scaled(size() * devicePixelRatioF(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    scaled.setDevicePixelRatio(devicePixelRatioF());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QBrush(scaled));
    painter.drawRoundedRect(rect(), style.radius, style.radius);
}

} // namespace quiverly
