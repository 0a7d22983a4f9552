#include "ui/controls/painting.h"

#include <QWidget>

namespace quiverly {

void fillRounded(QPainter& painter, const QRectF& rect, double radius, const QColor& color) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(rect, radius, radius);
}

void drawFocusRing(QPainter& painter, const QRectF& rect, double radius, const QColor& color) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect.adjusted(1, 1, -1, -1), radius - 1, radius - 1);
}

bool focusIsVisible(const QWidget& widget) {
    return widget.hasFocus() && widget.window()->testAttribute(Qt::WA_KeyboardFocusChange);
}

} // namespace quiverly
