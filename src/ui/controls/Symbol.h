#pragma once

class QColor;
class QPainter;
class QRectF;

namespace quiverly {

enum class Symbol { hand, warning, checkCircle, check };

// Draws one of the program's own symbols as large as it fits, centred.
void drawSymbol(QPainter& painter, const QRectF& rect, Symbol symbol, const QColor& color);

} // namespace quiverly
