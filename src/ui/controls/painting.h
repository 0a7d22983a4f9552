#pragma once

#include <QPainter>

class QWidget;

namespace quiverly {

// Fills a rounded rectangle, with smooth edges.
void fillRounded(QPainter& painter, const QRectF& rect, double radius, const QColor& color);

// Draws the ring that shows where the keyboard is: along the inside of a rounded rectangle.
void drawFocusRing(QPainter& painter, const QRectF& rect, double radius, const QColor& color);

// Whether to draw it: the keyboard is on the widget and the user is using it.
bool focusIsVisible(const QWidget& widget);

} // namespace quiverly
