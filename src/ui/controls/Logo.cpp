#include "ui/controls/Logo.h"

#include <QGraphicsDropShadowEffect>
#include <QPainter>

#include "ui/Theme.h"
#include "ui/controls/Symbol.h"

namespace quiverly {

namespace {

QGraphicsEffect* pinkShadow() {
    QColor color = Theme::primaryPink;
    color.setAlphaF(0.35F);
    auto* shadow = new QGraphicsDropShadowEffect;
    shadow->setColor(color);
    shadow->setBlurRadius(24); // twice the radius of the blur
    shadow->setOffset(0, 4);
    return shadow;
}

} // namespace

Logo::Logo(const QImage& image, const Style& style) : image(image), style(style) {
    setAccessibleName("Quiverly");
    setFixedSize(style.size, style.size);
    if (style.shadow && !image.isNull()) setGraphicsEffect(pinkShadow());
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
