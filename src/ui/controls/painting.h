#pragma once

#include <QPainter>

namespace quiverly {

// Fills a rounded rectangle, with smooth edges.
void fillRounded(QPainter& painter, const QRectF& rect, double radius, const QColor& color);

// Draws a line along the inside of a rounded rectangle, with smooth edges.
void outlineRounded(QPainter& painter, const QRectF& rect, double radius, const QColor& color, double width);

} // namespace quiverly
