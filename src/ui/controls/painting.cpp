#include "ui/controls/painting.h"

namespace quiverly {

void fillRounded(QPainter& painter, const QRectF& rect, double radius, const QColor& color) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(rect, radius, radius);
}

void outlineRounded(QPainter& painter, const QRectF& rect, double radius, const QColor& color, double width) {
    const double inset = width / 2;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, width));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), radius - inset, radius - inset);
}

} // namespace quiverly
