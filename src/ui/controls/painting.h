#pragma once

#include <QPainter>

class QWidget;

namespace quiverly {

// Fills a rounded rectangle, with smooth edges.
void fillRounded(QPainter& painter, const QRectF& rect, double radius, const QColor& color);

// Draws the ring of the keyboard focus along the inside of a rounded rectangle.
void drawFocusRing(QPainter& painter, const QRectF& rect, double radius, const QColor& color);

// Whether the ring is to be drawn: the widget has the focus and the user works with the keyboard.
bool focusIsVisible(const QWidget& widget);

} // namespace quiverly
