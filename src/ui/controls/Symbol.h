#pragma once

class QColor;
class QPainter;
class QRectF;

namespace quiverly {

enum class Symbol { hand, warning, checkCircle, check };

// Draws one of the program's own symbols centred in a rectangle, as large as fits.
void drawSymbol(QPainter& painter, const QRectF& rect, Symbol symbol, const QColor& color);

} // namespace quiverly
